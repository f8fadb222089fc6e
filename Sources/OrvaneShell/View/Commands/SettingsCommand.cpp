#include "OrvaneShell/Settings/SettingTable.h"
#include "OrvaneShell/View/Commands/ViewCommands.h"
#include "OrvaneShell/View/Overlays/ListOverlay.h"
#include "OrvaneShell/View/Overlays/PromptOverlay.h"

namespace orvane::FrameCommands {

namespace {

using Item = ListOverlay::Item;

void openAt(ViewContext& view, const Setting& setting);

/// Empty, or why it was refused.
std::string change(ViewContext& view, const Setting& setting, const std::string& value) {
    const auto done = SettingTable::set(setting, value, view.l10n, view.preferences);
    return done ? std::string() : done.error();
}

void choose(ViewContext& view, const Setting& setting) {
    auto list = std::make_unique<ListOverlay>(view, setting.meaning(view.l10n), [&setting](const ViewContext& with) {
        std::vector<Item> items;
        items.reserve(setting.choices.size());
        for (const std::string_view choice : setting.choices) {
            const bool isDefault = choice == setting.fallback;
            items.push_back({.label = std::string(choice),
                             .detail = isDefault ? with.l10n.text("settings.default") : std::string(),
                             .choose = [&setting, choice](ViewContext& then) {
                                 const std::string refusal = change(then, setting, std::string(choice));
                                 if (!refusal.empty()) then.say(refusal);
                                 openAt(then, setting);
                             }});
        }
        return items;
    });
    list->point(SettingTable::value(setting, view.preferences));
    view.open(std::move(list));
}

void type(ViewContext& view, const Setting& setting) {
    view.open(std::make_unique<PromptOverlay>(
        setting.meaning(view.l10n), SettingTable::value(setting, view.preferences),
        [&setting](ViewContext& with, const std::string& text) {
            std::string refusal = change(with, setting, text.empty() ? std::string(setting.fallback) : text);
            if (refusal.empty()) openAt(with, setting);
            return refusal;
        }));
}

Item item(const ViewContext& view, const Setting& setting) {
    const std::string value = SettingTable::value(setting, view.preferences);
    std::string detail = value;
    if (value != setting.fallback) detail += " (" + view.l10n.text("settings.otherwise", setting.fallback) + ")";
    // The value comes first: in a narrow window the name has no room.
    Item item{.label = setting.meaning(view.l10n), .detail = std::move(detail) + "  " + std::string(setting.key)};
    if (setting.kind == Setting::Kind::flag) {
        item.staysOpen = true;
        item.choose = [&setting, value](ViewContext& with) { change(with, setting, value == "on" ? "off" : "on"); };
    } else if (setting.kind == Setting::Kind::choice) {
        item.choose = [&setting](ViewContext& with) { choose(with, setting); };
    } else {
        item.choose = [&setting](ViewContext& with) { type(with, setting); };
    }
    return item;
}

void openAt(ViewContext& view, const Setting& setting) {
    settings(view);
    if (auto* list = dynamic_cast<ListOverlay*>(view.overlay.get())) list->point(setting.meaning(view.l10n));
}

}  // namespace

void settings(ViewContext& view) {
    view.open(std::make_unique<ListOverlay>(view, view.l10n.text("settings.title"), [](const ViewContext& with) {
        std::vector<Item> items;
        items.reserve(SettingTable::all().size());
        for (const Setting& setting : SettingTable::all())
            items.push_back(item(with, setting));
        return items;
    }));
}

}  // namespace orvane::FrameCommands
