#pragma once

#include <memory>
#include <string>

#include "OrvaneCore/Support/Calendar.h"
#include "OrvaneCore/Support/Language.h"

namespace orvane {

/// Says when something was, as short as it can be understood: the time of day for today ("14:05"), the weekday for the
/// six days before, and else day and month ("3 Nov"). One thread at a time.
class WhenLabeler {
 public:
    WhenLabeler(Language language, const Calendar& calendar, Date now);
    WhenLabeler(const WhenLabeler&) = delete;
    WhenLabeler& operator=(const WhenLabeler&) = delete;
    ~WhenLabeler();

    std::string label(Date date) const;

 private:
    struct Formats;

    Date today_;
    Date tomorrow_;
    Date weekBefore_;
    std::unique_ptr<Formats> formats_;
};

}  // namespace orvane
