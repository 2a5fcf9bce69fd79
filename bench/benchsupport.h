#pragma once
// What every benchmark of the module does around its measurements.

#include <QTemporaryDir>
#include <vector>

namespace zrbench {

// The offscreen platform unless the caller chose one; call before the application object exists.
void preferOffscreen();
// Lets Qt's warnings through but not its debug lines, nor the offscreen platform's notes on what it
// can't do (raise a window, grab the keyboard), which say nothing about speed.
void quietQtMessages();
double median(std::vector<double> values);

// The substitute host with a configuration of its own, and the module loaded, for one run.
class HostWithModule
{
public:
    HostWithModule();
    ~HostWithModule();
    HostWithModule(const HostWithModule&) = delete;
    HostWithModule& operator=(const HostWithModule&) = delete;

private:
    QTemporaryDir m_config;
};

} // namespace zrbench
