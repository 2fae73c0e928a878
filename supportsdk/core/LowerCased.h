#pragma once

#include <string>

namespace supportsdk {

/// `text` with the letters A to Z in lower case: for names of keys and the like, whatever the
/// locale. Every other byte stays.
inline std::string lowerCased(std::string text) {
    for (auto& letter : text) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return text;
}

}  // namespace supportsdk
