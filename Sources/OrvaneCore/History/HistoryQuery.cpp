#include "OrvaneCore/History/HistoryQuery.h"

namespace orvane {

bool HistoryQuery::passesFilters(const SessionRecord& record) const {
    if (provider && record.provider != *provider) return false;
    if (projectPath && record.projectPath != *projectPath) return false;
    if (from && record.lastActivityAt < *from) return false;
    return !to || record.lastActivityAt <= *to;
}

}  // namespace orvane
