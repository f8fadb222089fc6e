#include "OrvaneShell/Host/SessionWait.h"

#include <utility>

#include "Orvane/Support/WallClock.h"

namespace orvane {

Outcome SessionWait::start(HostContext& host, const Uuid& session, Test test, std::optional<double> limit) {
    if (auto outcome = test(host.store.session(session))) return *std::move(outcome);
    const std::shared_ptr<SessionWait> wait(new SessionWait(host, session, std::move(test)));
    const std::weak_ptr<SessionWait> weak = wait;
    wait->changes_ = host.store.changed.subscribe([weak] {
        if (const auto self = weak.lock()) self->look();
    });
    if (limit) {
        wait->timeout_ = host.store.loop().after(durationOf(Seconds(*limit)), [weak] {
            if (const auto self = weak.lock()) self->finish(JsonValue{{"timedOut", true}});
        });
    }
    // Whoever asked keeps it alive.
    if (const auto connection = host.connection.lock()) connection->onClose([kept = wait] { kept->test_ = {}; });
    return Later{};
}

SessionWait::SessionWait(const HostContext& host, const Uuid& session, Test test)
    : store_(host.store), session_(session), test_(std::move(test)), answer_(host.answer) {}

void SessionWait::look() {
    if (!test_) return;
    if (const auto outcome = test_(store_.session(session_))) finish(*outcome);
}

void SessionWait::finish(const Outcome& outcome) {
    changes_.reset();
    timeout_.reset();
    if (!std::exchange(test_, {})) return;
    answer_(outcome);
}

}  // namespace orvane
