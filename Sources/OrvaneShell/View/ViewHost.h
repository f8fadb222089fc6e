#pragma once

#include <functional>
#include <map>
#include <memory>

#include "OrvaneShell/Host/HostContext.h"
#include "OrvaneShell/View/LinkOpener.h"
#include "OrvaneShell/View/WorkspaceView.h"
#include "Platform/PreferencesStore.h"

namespace orvane {

/// The views that are open: one that draws, and those that a newer one has replaced and that are just ending. Main
/// thread only.
class ViewHost {
 public:
    /// `stopHost` runs when a view asks for the end of the host.
    ViewHost(PreferencesStore& preferences, std::string home, std::function<void()> stopHost);

    /// Serves the verb `view`.
    Outcome open(HostContext& host, const JSONObject& arguments);
    /// The host ends: gives every terminal back to its client.
    void endAll();

 private:
    struct Opened {
        std::unique_ptr<WorkspaceView> view;
        ViewSettings::Client client;
        std::unique_ptr<LinkOpener> links;
        std::function<void(const Outcome&)> answer;
    };

    std::unique_ptr<WorkspaceView> make(HostContext& host, const JSONObject& arguments, TerminalDevice device,
                                        std::uint64_t id);
    bool openLink(std::uint64_t id, const std::string& address);
    bool isPlain(const JSONObject& arguments) const;
    void attend(LineServer::Connection& connection, std::uint64_t id, bool isPlain);
    void replaceOthers();
    void forget(std::uint64_t id, WorkspaceView::End end);
    WorkspaceView* view(std::uint64_t id) const;
    /// Shows the project of a folder. An unknown folder becomes a project when it is a repository, or when there is no
    /// project yet, or when it was asked for; a new project begins with a shell.
    enum class Folder { found, asked };
    void showFolder(AppStore& store, const L10n& l10n, const std::string& folder, Folder how, std::uint64_t id);

    PreferencesStore& preferences_;
    std::string home_;
    std::function<void()> stopHost_;
    std::map<std::uint64_t, Opened> views_;
    std::uint64_t lastId_ = 0;
    Registration preferencesWatch_;
    /// For work that is still under way when the host ends.
    std::shared_ptr<ViewHost*> self_ = std::make_shared<ViewHost*>(this);
};

}  // namespace orvane
