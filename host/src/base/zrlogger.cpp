#include "zrlogger.h"

#include <spdlog/logger.h>

ZrLogger::ZrLogger() = default;

ZrLogger* ZrLogger::getInstance()
{
    static ZrLogger logger;
    return &logger;
}

std::shared_ptr<spdlog::logger> ZrLogger::getSpdLogger() const { return m_logger; }
void ZrLogger::setSpdLogger(std::shared_ptr<spdlog::logger> logger) { m_logger = std::move(logger); }
