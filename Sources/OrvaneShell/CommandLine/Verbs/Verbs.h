#pragma once

#include "OrvaneShell/CommandLine/Verb.h"

/// Each verb is described and carried out in a source of its own beside this header.
namespace orvane::Verbs {

Verb view();
Verb host();
Verb open();
Verb new_();
Verb list();
Verb screen();
Verb type();
Verb resize();
Verb send();
Verb approve();
Verb deny();
Verb answer();
Verb interrupt();
Verb clear();
Verb model();
Verb effort();
Verb mode();
Verb status();
Verb wait();
Verb projects();
Verb rename();
Verb color();
Verb move();
Verb remove();
Verb layout();
Verb close();
Verb agents();
Verb agentsAdd();
Verb agentsEdit();
Verb agentsRemove();
Verb events();
Verb history();
Verb historyResume();
Verb historyShow();
Verb trace();
Verb keys();
Verb keysSet();
Verb keysRemove();
Verb keysReset();
Verb settings();
Verb doctor();
Verb quit();
Verb tools();
Verb toolsInstall();
Verb toolsUpdate();
Verb terminalFeed();
Verb terminalRun();
Verb help();
/// What a second start of the host sends to the first.
Verb activateExisting();

}  // namespace orvane::Verbs
