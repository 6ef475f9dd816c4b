#pragma once

#include "Record.h"

#include <KesCommon/Log.h>

namespace KesTest {

/// What goes to the log while it lives.
class LoggedTexts : public Record {
public:
    LoggedTexts()
        : _previous(KesLog::Log::setObserver([this](auto, const std::string& text) { write(text); }))
    {}
    ~LoggedTexts() { KesLog::Log::setObserver(std::move(_previous)); }

private:
    KesLog::Log::Observer _previous;
};

} // namespace KesTest
