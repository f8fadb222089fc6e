#pragma once

#include <optional>

#include "OrvaneCore/Chat/ApprovalPolicy.h"
#include "OrvaneCore/Support/Date.h"
#include "OrvaneCore/Support/Uuid.h"

namespace orvane {

/// What a session asks of its user, and what was answered.
struct SessionApproval {
    std::optional<ApprovalPolicy::Request> pendingRequest;
    /// A fresh one for each question, so that an answer from elsewhere cannot meet another question.
    std::optional<Uuid> pendingRequestID;
    std::optional<Date> approvalAskedAt;
    bool approvalAnswered = false;
    std::optional<ApprovalPolicy::Request> lastAnsweredRequest;
    Date answeredAt;

    /// The session begins to wait.
    void raise(Date now);
    /// It waits no longer.
    void withdraw();
    /// Somebody has answered; the first answer counts.
    void answer(Date now);
    /// Another question than the pending one, or the first. False when it is the same.
    bool ask(const ApprovalPolicy::Request& request, Date now);
    /// Whether this is the question that was answered a moment ago: it stays on the screen until the agent has drawn
    /// on. One that stays longer was not answered, or is asked again.
    bool isStillClosing(const ApprovalPolicy::Request& request, Date now) const;
};

}  // namespace orvane
