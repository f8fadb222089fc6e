#pragma once

#include <cstddef>
#include <span>

#include "Orvane/History/HistoryCorpus.h"
#include "OrvaneShell/View/CanvasPen.h"

/// Past conversations as rows of a list.
namespace orvane::ConversationRows {

/// One to a row of the area, as many as there are: agent, title, project, when and how many messages. Where it is
/// narrow the project goes, and then the number.
void paint(CanvasPen& pen, const CellRect& area, std::span<const HistoryCorpus::Row> rows, std::size_t chosen);

}  // namespace orvane::ConversationRows
