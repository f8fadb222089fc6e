#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace orvane {

/// A model that Codex offers.
struct CodexModel {
    std::string slug;
    bool visible = true;  ///< in the picker
    std::string defaultEffort;
    std::vector<std::string> efforts;

    bool operator==(const CodexModel&) const = default;
};

/// The interactive `/model` picker of Codex, which takes two digits.
namespace CodexPicker {

using Catalog = std::vector<CodexModel>;

/// Reads `~/.codex/models_cache.json`. Models come in the picker's order: by `priority` where the file has it, those
/// without one last, in the order of the file. Nothing when it is no such file.
std::optional<Catalog> parse(std::string_view json);

/// Efforts of a model; none for a model that the catalog lacks.
std::vector<std::string> efforts(std::string_view forModel, const Catalog& catalog);

/// The digits for a model and its effort; nothing when the picker cannot be led there.
std::optional<std::vector<int>> digits(std::string_view model, std::string_view effort, const Catalog& catalog);

}  // namespace CodexPicker

}  // namespace orvane
