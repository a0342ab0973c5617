#include "product/ProductAddresses.h"

#include "platform/port/Desktop.h"

namespace velmora {

namespace {

std::string site() {
    return desktop().environment("VELMORA_SITE").value_or("https://velmora.example");
}

}  // namespace

std::string productHomePage() {
    return site() + "/";
}

std::string updateDescription() {
    return site() + "/VelmoraVersion.plist";
}

std::string makerHomePage() {
    return "https://korvane.example/";
}

}  // namespace velmora
