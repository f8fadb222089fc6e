#include "OrvaneShell/View/SessionMark.h"

#include "OrvaneCore/Support/Overloaded.h"
#include "OrvaneShell/View/Painting/ViewLook.h"

namespace orvane {

SessionMark SessionMark::comingBack() {
    return {"◌", ViewLook::dim};
}

SessionMark SessionMark::of(const SessionController& session) {
    using Status = SessionStatus;
    const bool hasFailed = std::holds_alternative<Status::Failed>(session.status().value);
    if (session.hasUnseenEnd() && !hasFailed) return {"◆", ViewLook::colored(ViewLook::green, ViewLook::Style::bold)};
    // Of a shell it is only known that it runs.
    const bool isQuiet = !isAgent(session.identity().kind);
    return std::visit(Overloaded{
                          [](const Status::Waiting&) {
                              return SessionMark{"!", ViewLook::colored(ViewLook::yellow, ViewLook::Style::bold)};
                          },
                          [&](const Status::Working&) {
                              return isQuiet ? SessionMark{"·", ViewLook::dim}
                                             : SessionMark{"●", ViewLook::colored(ViewLook::blue)};
                          },
                          [](const Status::Idle&) { return SessionMark{"○", ViewLook::colored(ViewLook::green)}; },
                          [](const Status::Ready&) { return SessionMark{"◦", ViewLook::dim}; },
                          [](const Status::Done&) { return SessionMark{"✓", ViewLook::dim}; },
                          [](const Status::Failed&) { return SessionMark{"✗", ViewLook::colored(ViewLook::red)}; },
                      },
                      session.status().value);
}

}  // namespace orvane
