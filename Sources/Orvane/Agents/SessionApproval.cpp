#include "Orvane/Agents/SessionApproval.h"

namespace orvane {

namespace {

/// Agents take a dialog away within half a second.
constexpr Seconds closingTime{3};

}  // namespace

void SessionApproval::raise(Date now) {
    approvalAskedAt = now;
    approvalAnswered = false;
    lastAnsweredRequest.reset();
    if (!pendingRequestID) pendingRequestID = Uuid::random();
}

void SessionApproval::withdraw() {
    pendingRequest.reset();
    pendingRequestID.reset();
    approvalAskedAt.reset();
}

void SessionApproval::answer(Date now) {
    if (approvalAnswered) return;
    approvalAnswered = true;
    answeredAt = now;
    lastAnsweredRequest = pendingRequest;
    pendingRequest.reset();
    pendingRequestID.reset();
}

bool SessionApproval::ask(const ApprovalPolicy::Request& request, Date now) {
    if (pendingRequest == request) return false;
    if (pendingRequest) {
        pendingRequestID = Uuid::random();
        approvalAskedAt = now;
    }
    pendingRequest = request;
    approvalAnswered = false;
    return true;
}

bool SessionApproval::isStillClosing(const ApprovalPolicy::Request& request, Date now) const {
    return approvalAnswered && lastAnsweredRequest == request && now - answeredAt < closingTime;
}

}  // namespace orvane
