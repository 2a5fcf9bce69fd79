#pragma once
// The host's growable array.

#include <algorithm>
#include <vector>

template <class T>
class ZrArray
{
public:
    ZrArray() = default;
    // The growth step is kept for the host's signature; storage grows as std::vector does.
    explicit ZrArray(int physicalLength, int growLength = 8)
    {
        (void)growLength;
        m_items.reserve(static_cast<size_t>(std::max(0, physicalLength)));
    }

    int length() const { return static_cast<int>(m_items.size()); }
    int logicalLength() const { return length(); }
    bool isEmpty() const { return m_items.empty(); }
    T& operator[](int i) { return m_items[static_cast<size_t>(i)]; }
    const T& operator[](int i) const { return m_items[static_cast<size_t>(i)]; }
    T& at(int i) { return m_items.at(static_cast<size_t>(i)); }
    const T& at(int i) const { return m_items.at(static_cast<size_t>(i)); }
    T& first() { return m_items.front(); }
    T& last() { return m_items.back(); }

    int append(const T& item)
    {
        m_items.push_back(item);
        return length() - 1;
    }
    void removeAt(int i) { m_items.erase(m_items.begin() + i); }
    void removeAll() { m_items.clear(); }
    void setLogicalLength(int n) { m_items.resize(static_cast<size_t>(std::max(0, n))); }
    bool contains(const T& item) const { return std::find(m_items.begin(), m_items.end(), item) != m_items.end(); }
    int find(const T& item) const
    {
        auto it = std::find(m_items.begin(), m_items.end(), item);
        return it == m_items.end() ? -1 : static_cast<int>(it - m_items.begin());
    }

    typename std::vector<T>::iterator begin() { return m_items.begin(); }
    typename std::vector<T>::iterator end() { return m_items.end(); }
    typename std::vector<T>::const_iterator begin() const { return m_items.begin(); }
    typename std::vector<T>::const_iterator end() const { return m_items.end(); }
    std::vector<T>& std() { return m_items; }
    const std::vector<T>& std() const { return m_items; }

private:
    std::vector<T> m_items;
};
