#pragma once

#include <chrono>
#include <optional>
#include <string>
#include <string_view>
#include <variant>

#include "OrvaneCore/Support/JSONObject.h"
#include "OrvaneShell/CommandLine/ClientContext.h"
#include "Platform/LineClient.h"
#include "Platform/SignalInbox.h"
#include "Platform/TerminalLoan.h"

namespace orvane {

/// The client's half of the workspace view: lends the terminal it was typed in to the host, which draws and reads keys,
/// and waits. However that ends, the terminal is given back as it was.
class ViewClient {
 public:
    struct Wish {
        std::string project = {};  ///< empty for that of the host's choice
        /// Plain lines, for a screen reader; else as the preferences say.
        bool isPlain = false;
    };
    /// Returns the exit status; a signal that ends it ends the process.
    static int run(ClientContext& client, const Wish& wish);

 private:
    using Clock = std::chrono::steady_clock;

    struct Answered {
        JsonValue reply;
    };
    struct HostLost {
        SystemError error;
    };
    struct Signalled {
        int signal = 0;
    };
    using End = std::variant<Answered, HostLost, Signalled>;

    ViewClient(ClientContext& client, const TerminalLoan& loan, LineClient& host);

    End lend(const std::string& request);
    std::optional<End> wait();
    void takeSignals();
    void leaveBecauseOf(int signal);
    void comeBack();
    std::optional<End> takeLines();
    void tell(std::string_view line);
    void giveBack();
    bool wasUnread(const End& end) const;
    int conclude(const End& end);
    int conclude(const JSONObject& reply);

    ClientContext& client_;
    const TerminalLoan& loan_;
    LineClient& host_;  ///< gone once the terminal was given back
    SignalInbox signals_;
    bool isAttached_ = false;  ///< the host may have drawn
    bool isPlain_ = false;     ///< or only written lines
    std::optional<Signalled> leavesBecauseOf_;
    /// For the host to draw, or to stop that; none while the view is open.
    std::optional<Clock::time_point> deadline_;
};

}  // namespace orvane
