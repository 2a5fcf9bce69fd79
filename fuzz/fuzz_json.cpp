// Fuzz target for the JSON reader. Whatever reads must write out and read back as an equal value,
// in both layouts; whatever fails must say where; the path readers must agree with the index ones.

#include "fuzzsupport.h"

#include "zrjson.h"

#include <algorithm>
#include <cstdint>
#include <string>

namespace {

void checkRoundTrip(const IElementValueBase& value, bool indented)
{
    const ZrUtf8String text = value.toJson(indented);
    ZrJsonParseError error;
    const ZrJsonPtr again = ElementValue::parse(text, &error);
    require(again && error.ok(), "the written text does not read back");
    require(again->equals(value) && value.equals(*again), "the text read back differs");
    require(again->toJson(indented) == text, "writing what was read back gives other text");
}

// Keys that a path can name: not empty, no '/', no NUL (the readers take C strings).
bool isPlainKey(const std::string& key)
{
    return !key.empty() && key.find('/') == std::string::npos && key.find('\0') == std::string::npos;
}

void exerciseReaders(const ZrJsonPtr& root)
{
    require(root->GetVarJsonPtr("").sameValue(root), "the empty key misses the value itself");
    const int count = std::min(root->size(), 8);
    for (int i = 0; i < count; ++i) {
        const ZrJsonPtr child = root->at(i);
        const std::string key = root->isArray() ? std::to_string(i) : root->keyAt(i).std();
        if (!isPlainKey(key))
            continue;
        require(root->GetVarJsonPtr(key.c_str()).sameValue(child), "a path misses its child");
        require(root->hasProperty(key.c_str()), "a child is not a property");

        const std::string nested = key + "/0";
        if (child->isArray() && child->size() > 0) {
            require(root->safeProperty_ptr(ZrUtf8String(nested)).sameValue(child->at(0)),
                    "a nested path misses its element");
        }
        root->GetVarI(nested.c_str(), 7);
        root->GetVarL(nested.c_str(), -7);
        root->GetVarB(nested.c_str(), true);
        root->GetVarD(nested.c_str(), 0.5);
        root->GetVarSW(nested.c_str(), L"default");
        child->safeStrValueW();
        child->safeIntValue();

        // Writes go to a deep copy: the original must not change.
        if (root->isObject()) {
            const ZrUtf8String before = root->toJson();
            const ZrJsonPtr copy = root->clone();
            copy->SetDataS(nested.c_str(), "written");
            require(copy->GetVarS(nested.c_str()) == ZrUtf8String("written"), "a path write was lost");
            require(root->toJson() == before, "a write to the copy reached the original");
        }
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    ZrJsonParseError error;
    const ZrJsonPtr value = ElementValue::parse(reinterpret_cast<const char*>(data), size, &error);
    if (!value) {
        require(!error.ok() && static_cast<size_t>(error.offset) <= size, "a fault without a place");
        require(error.line >= 1 && error.column >= 1 && !error.message.isEmpty(), "a fault without a message");
        return 0;
    }
    require(error.ok(), "a success with a fault");
    checkRoundTrip(*value, false);
    checkRoundTrip(*value, true);
    require(value->clone()->equals(*value), "a clone differs");
    exerciseReaders(value);
    return 0;
}
