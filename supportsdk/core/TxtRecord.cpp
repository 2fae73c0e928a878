#include "supportsdk/core/TxtRecord.h"

#include <algorithm>

namespace supportsdk {

namespace {

constexpr std::size_t longestItem = 255;
constexpr std::size_t longestRecord = 65'535;

bool isUsableKey(const std::string& key) {
    return !key.empty() && std::all_of(key.begin(), key.end(), [](char letter) {
        return letter >= ' ' && letter <= '~' && letter != '=';
    });
}

std::string withoutCase(std::string key) {
    for (auto& letter : key) {
        if (letter >= 'A' && letter <= 'Z') letter = static_cast<char>(letter - 'A' + 'a');
    }
    return key;
}

}  // namespace

Bytes dataFromTXTRecordDictionary(const std::map<std::string, Bytes>& pairs) {
    const auto fits = [](const auto& pair) {
        return isUsableKey(pair.first) && pair.first.size() + 1 + pair.second.size() <= longestItem;
    };
    std::map<std::string, const std::string*> written;
    for (const auto& pair : pairs) {
        if (fits(pair)) written[withoutCase(pair.first)] = &pair.first;
    }
    Bytes data;
    for (const auto& pair : pairs) {
        const auto& [key, value] = pair;
        if (!fits(pair) || written[withoutCase(key)] != &key) continue;
        const auto length = key.size() + 1 + value.size();
        if (data.size() + 1 + length > longestRecord) continue;
        data.push_back(static_cast<std::byte>(length));
        const auto start = toBytes(key + "=");
        data.insert(data.end(), start.begin(), start.end());
        data.insert(data.end(), value.begin(), value.end());
    }
    if (data.empty()) data.emplace_back();
    return data;
}

}  // namespace supportsdk
