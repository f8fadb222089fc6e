#pragma once

#include <string>
#include <vector>

namespace orvane {

/// Texts as exec takes them, with a null at the end. They must outlive it; exec does not change them.
inline std::vector<char*> argumentVector(const std::vector<std::string>& texts) {
    std::vector<char*> list;
    list.reserve(texts.size() + 1);
    for (const std::string& text : texts)
        list.push_back(const_cast<char*>(text.c_str()));
    list.push_back(nullptr);
    return list;
}

}  // namespace orvane
