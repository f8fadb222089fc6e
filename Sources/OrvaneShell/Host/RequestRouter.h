#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "OrvaneCore/Support/L10n.h"
#include "OrvaneShell/CommandLine/Verb.h"
#include "OrvaneShell/Host/HostServices.h"
#include "Platform/LineServer.h"

namespace orvane {

/// Turns the lines of the control socket into calls of verbs, and their outcomes into lines. A request is
/// {"verb":…,"arguments":{…},"language":…}; a reply {"ok":true,"result":…} or
/// {"ok":false,"error":{"code":…,"message":…}}. Nothing that a client sends can end the host.
class RequestRouter {
 public:
    RequestRouter(const HostServices& services, L10n l10n, std::function<void()> stop);
    /// For clients that do not tell their language.
    void setTexts(const L10n& l10n) { l10n_ = l10n; }

    void handle(const std::shared_ptr<LineServer::Connection>& connection, std::string_view line);
    std::string faultReply(LineServer::Fault fault) const;

 private:
    Outcome serve(const std::shared_ptr<LineServer::Connection>& connection, std::string_view line);

    HostServices services_;
    L10n l10n_;
    std::function<void()> stop_;
};

}  // namespace orvane
