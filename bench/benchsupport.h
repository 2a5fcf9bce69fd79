#pragma once
// What every benchmark of the module does around its measurements.

#include <QApplication>
#include <QTemporaryDir>
#include <vector>

namespace zrbench {

double median(std::vector<double> values);

// The application of one benchmark run: Qt's offscreen platform unless the caller chose one, Qt's
// debug lines and the offscreen platform's notes on what it can't do (raise a window, grab the
// keyboard) kept out of the figures, and the substitute host with a configuration of its own and
// the module loaded.
class BenchApp
{
public:
    BenchApp(int& argc, char** argv);
    ~BenchApp();
    BenchApp(const BenchApp&) = delete;
    BenchApp& operator=(const BenchApp&) = delete;

    // The integer argument at `index`, at least `least`; `fallback` when it is not given.
    int intArgument(int index, int fallback, int least) const;

private:
    static int& prepare(int& argc);

    QApplication m_app;
    QTemporaryDir m_config;
};

} // namespace zrbench
