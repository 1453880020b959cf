// The info command: the phone's identity, state and file-system figures.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <span>

#include "qdiag/commands.h"
#include "qdiag/efs/space.h"
#include "qdiag/facts.h"
#include "qdiag/phone.h"

namespace tools::qdiag {
namespace {

/// Returns the text of a fixed-width field: up to its first zero, without trailing blanks.
std::string FieldText(std::span<const char> field) {
    const std::string text(field.begin(), std::ranges::find(field, '\0'));
    return text.substr(0, text.find_last_not_of(' ') + 1);
}

std::string HexNumber(DWORD number) {
    char text[16];
    std::snprintf(text, sizeof text, "0x%08X", static_cast<int>(number));
    return text;
}

void AddVersion(const Phone& phone, Facts& facts) {
    QLIB_PhoneResp_Version version{};
    if (!phone->DIAG_VERNO_F(&version))
        return facts.Missing({"compiled", "released", "version_directory", "station_class", "air_interface",
                              "model", "firmware_revision", "slot_cycle", "hardware_version"},
                             phone.NoResponse("the version").what());
    facts.Text("compiled", FieldText(version.sCompileDate) + " " + FieldText(version.sCompileTime));
    facts.Text("released", FieldText(version.sReleaseDate) + " " + FieldText(version.sReleaseTime));
    facts.Text("version_directory", FieldText(version.sVersionDirectory));
    facts.Number("station_class", version.iStationClass);
    facts.Number("air_interface", version.iCaiRevision);
    facts.Number("model", version.iModel);
    facts.Number("firmware_revision", version.iFirmwareRevision);
    facts.Number("slot_cycle", version.iSlotCycle);
    facts.Number("hardware_version", version.iHardwareVersion);
}

void AddBuild(const Phone& phone, Facts& facts) {
    DWORD hardware = 0;
    DWORD model = 0;
    char software[PhoneIdentity::kBuildTextSize] = "";
    char modelName[PhoneIdentity::kBuildTextSize] = "";
    if (!phone->DIAG_EXT_BUILD_ID_F(hardware, model, software, modelName))
        return facts.Missing({"software", "model_name", "modem_version", "mobile_model"},
                             phone.NoResponse("the build").what());
    facts.Text("software", software);
    facts.Text("model_name", modelName);
    facts.Text("modem_version", HexNumber(hardware));
    facts.Number("mobile_model", model);
}

void AddState(const Phone& phone, Facts& facts) {
    DWORD serial = 0;
    if (phone->DIAG_READ_ESN_F(serial))
        facts.Text("esn", HexNumber(serial));
    else
        facts.Missing({"esn"}, "the phone did not report its serial number");
    unsigned char status = 0;
    if (phone->DIAG_STATUS_F(status))
        facts.Number("status", status);
    else
        facts.Missing({"status"}, phone.NoResponse("the status").what());
}

} // namespace

void InfoCommand(const Job& job) {
    const Phone phone(job);
    Facts facts;
    facts.Text("port", "COM" + std::to_string(phone.Port()));
    AddVersion(phone, facts);
    AddBuild(phone, facts);
    AddState(phone, facts);
    AddSpace(phone, facts);
    facts.Print(job.Has("--json"));
    if (!facts.Reasons().empty())
        throw Failure(facts.Reasons());
}

} // namespace tools::qdiag
