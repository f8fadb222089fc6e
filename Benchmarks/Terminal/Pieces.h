#pragma once

#include "Terminal/Script.h"

/// The pieces that workloads are made of. Lines end with CR LF, as they come from a pseudo-terminal.
namespace orvane::benchmark::Pieces {

// Text that scrolls.
void log(Script& script);
void shortLine(Script& script);
void longLine(Script& script);
void source(Script& script);
void cjkLog(Script& script);
void mixedUnicode(Script& script);
void linksAndTitles(Script& script);

// Screens that are drawn.
void lightRedraw(Script& script);
void denseCells(Script& script);
void gradient(Script& script);
void alternateScreen(Script& script);
void agent(Script& script);
void synchronizedFrame(Script& script);

// Single operations on the screen.
void cursorMotion(Script& script);
void scrollRegion(Script& script);
void edits(Script& script);

}  // namespace orvane::benchmark::Pieces
