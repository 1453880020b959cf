#include "link/event_names.h"

#include <algorithm>
#include <cstdio>
#include <string_view>

#include "link/event_name_lists.h"

namespace {

constexpr std::string_view kWhite = " \n";

/// NextName removes the first name from a list and returns it; empty at the end of the list.
constexpr std::string_view NextName(std::string_view& list) {
    list.remove_prefix(std::min(list.find_first_not_of(kWhite), list.size()));
    const std::string_view name = list.substr(0, list.find_first_of(kWhite));
    list.remove_prefix(name.size());
    return name;
}

/// A range of consecutive ids, named by a list or, where that is empty, by a prefix and the id.
struct EventStretch {
    int iFirstId;
    int iLastId;
    std::string_view names;
    const char* sPrefix;
};

constexpr EventStretch Listed(int iFirstId, std::string_view names) {
    int iCount = 0;
    for (std::string_view rest = names; !NextName(rest).empty();)
        ++iCount;
    return {iFirstId, iFirstId + iCount - 1, names, ""};
}

constexpr EventStretch Numbered(int iFirstId, int iLastId, const char* sPrefix) {
    return {iFirstId, iLastId, {}, sPrefix};
}

constexpr EventStretch kStretches[] = {
    Listed(0, kNamesFrom0),
    Listed(256, kNamesFrom256),
    Numbered(647, 655, "EVENT_BREW_UNDEFINED_"),
    Listed(656, kNamesFrom656),
    Numbered(661, 895, "EVENT_BREW_UNDEFINED_"),
    Listed(896, kNamesFrom896),
    Numbered(946, 967, "EVENT_QTV_UNDEFINED_"),
    Listed(968, kNamesFrom968),
    Numbered(978, 981, "EVENT_SEC_RESERVED_"),
    Listed(982, kNamesFrom982),
    Listed(1049, kNamesFrom1049),
    Listed(1071, kNamesFrom1071),
    Listed(2049, kNamesFrom2049),
};

/// Returns the name at index iPlace of a list that is longer than that.
std::string_view NameAt(std::string_view list, int iPlace) {
    for (; iPlace > 0; --iPlace)
        NextName(list);
    return NextName(list);
}

} // namespace

bool GetEventText(int iEventId, char* sOut) {
    for (const EventStretch& stretch : kStretches) {
        if (iEventId < stretch.iFirstId || iEventId > stretch.iLastId)
            continue;
        if (stretch.names.empty())
            std::snprintf(sOut, kEventTextSize, "%s%d", stretch.sPrefix, iEventId);
        else
            sOut[NameAt(stretch.names, iEventId - stretch.iFirstId).copy(sOut, kEventTextSize - 1)] = '\0';
        return true;
    }
    std::snprintf(sOut, kEventTextSize, "EVENT_NOT_FOUND");
    return false;
}
