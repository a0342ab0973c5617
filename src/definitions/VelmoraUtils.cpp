#include "definitions/VelmoraUtils.h"

#include "platform/appkit/NSMenu.h"

namespace velmora {

namespace {

std::string_view withoutLeadingSlashes(std::string_view title) {
    const std::size_t first = title.find_first_not_of('/');
    return first == std::string_view::npos ? std::string_view() : title.substr(first);
}

void appendMenus(const NSMenu* menu, std::string& path) {
    if (!menu || !menu->supermenu()) return;
    appendMenus(menu->supermenu(), path);
    VelmoraUtils::appendPathComponent(path, menu->title());
}

}  // namespace

void VelmoraUtils::appendPathComponent(std::string& path, std::string_view title) {
    if (path.empty()) {
        path = title;
        return;
    }
    while (!path.empty() && path.back() == '/') path.pop_back();
    path += '/';
    path += withoutLeadingSlashes(title);
}

void VelmoraUtils::setMenuItemPath(const NSMenuItem& item, std::string& path) {
    path.clear();
    appendMenus(item.menu(), path);
    appendPathComponent(path, item.title());
}

std::string VelmoraUtils::menuItemPathFor(const NSMenuItem& item) {
    std::string path;
    setMenuItemPath(item, path);
    return path;
}

bool VelmoraUtils::mayHavePath(const NSMenuItem& item, std::string_view path) {
    return path.ends_with(withoutLeadingSlashes(item.title()));
}

}  // namespace velmora
