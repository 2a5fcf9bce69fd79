#pragma once
// One executable per subsystem: each test class registers itself and the shared main runs them all.

#include <QObject>
#include <functional>
#include <vector>

namespace ZrTest {

using Factory = std::function<QObject*()>;
bool registerSuite(const char* name, Factory factory);

} // namespace ZrTest

#define ZR_TEST_SUITE(CLASS) \
    static const bool zr_registered_##CLASS = ZrTest::registerSuite(#CLASS, [] { return new CLASS; });
