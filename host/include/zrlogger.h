#pragma once
// The host's logger.

#include "zrhost_export.h"

#include <memory>

namespace spdlog { class logger; }

class ZRHOST_EXPORT ZrLogger
{
public:
    static ZrLogger* getInstance();
    // Null means no logging.
    std::shared_ptr<spdlog::logger> getSpdLogger() const;
    void setSpdLogger(std::shared_ptr<spdlog::logger> logger);

private:
    ZrLogger();
    std::shared_ptr<spdlog::logger> m_logger;
};
