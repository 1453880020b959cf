#include "qdiag/archive/identity.h"

#include <cstdio>

#include "common/text.h"

namespace tools::qdiag {
namespace {

std::string LineOf(const char* key, const std::string& value) {
    return value.empty() ? "" : std::string(key) + "=" + value + "\n";
}

} // namespace

std::string Identity::Text() const {
    std::string text = model;
    if (!serial.empty())
        text += (text.empty() ? "" : ", ") + ("serial number " + serial);
    if (!software.empty())
        text += (text.empty() ? "" : ", ") + ("software " + software);
    return text.empty() ? "a phone that does not report who it is" : text;
}

std::string Identity::Stored() const {
    return LineOf("serial", serial) + LineOf("model", model) + LineOf("software", software);
}

bool Identity::MayEqual(const Identity& other) const {
    const auto differ = [](const std::string& a, const std::string& b) {
        return !a.empty() && !b.empty() && a != b;
    };
    return !differ(serial, other.serial) && !differ(model, other.model);
}

Identity IdentityOf(const Phone& phone) {
    Identity identity;
    DWORD serial = 0;
    if (phone->DIAG_READ_ESN_F(serial)) {
        char text[16];
        std::snprintf(text, sizeof text, "0x%08X", static_cast<unsigned>(serial));
        identity.serial = text;
    }
    DWORD hardware = 0;
    DWORD model = 0;
    char software[PhoneIdentity::kBuildTextSize] = "";
    char modelName[PhoneIdentity::kBuildTextSize] = "";
    phone->DIAG_EXT_BUILD_ID_F(hardware, model, software, modelName);
    identity.model = Printable(modelName);
    identity.software = Printable(software);
    return identity;
}

Identity ParseIdentity(const std::string& stored) {
    Identity identity;
    for (const std::string& line : Lines(stored)) {
        const size_t equals = line.find('=');
        const std::string key = line.substr(0, equals);
        std::string* const value = key == "serial"     ? &identity.serial
                                   : key == "model"    ? &identity.model
                                   : key == "software" ? &identity.software
                                                       : nullptr;
        if (value != nullptr && equals != std::string::npos)
            *value = Printable(line.substr(equals + 1));
    }
    return identity;
}

} // namespace tools::qdiag
