// The info command: the phone's identity, state and file-system figures.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <span>

#include "common/text.h"
#include "qdiag/commands.h"
#include "qdiag/phone.h"

namespace tools::qdiag {
namespace {

/// One fact about the phone.
struct Fact {
    const char* key;     // the JSON key
    std::string printed; // the value as text for people
    std::string json;    // the value as JSON
};

/// The facts that the phone reported, and the reasons why others are missing.
class Facts {
public:
    void Text(const char* key, const std::string& text) {
        m_facts.push_back({key, Printable(text), JsonText(text)});
    }
    void Number(const char* key, uint64_t number) {
        m_facts.push_back({key, std::to_string(number), std::to_string(number)});
    }
    /// Records facts that the phone did not report, and the reason.
    void Missing(std::initializer_list<const char*> keys, const std::string& reason) {
        for (const char* key : keys)
            m_facts.push_back({key, "(not reported)", "null"});
        m_reasons += (m_reasons.empty() ? "" : "; ") + reason;
    }

    void Print(bool isJson) const {
        std::string text = isJson ? "{\n" : "";
        for (const Fact& fact : m_facts) {
            std::string name = fact.key;
            if (isJson) {
                text += "  \"" + name + "\": " + fact.json + (&fact == &m_facts.back() ? "\n" : ",\n");
                continue;
            }
            std::ranges::replace(name, '_', ' ');
            name.resize(22, ' ');
            text += name + fact.printed + "\n";
        }
        std::printf("%s%s", text.c_str(), isJson ? "}\n" : "");
    }
    const std::string& Reasons() const { return m_reasons; }

private:
    std::vector<Fact> m_facts;
    std::string m_reasons;
};

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

void AddFileSystem(const Phone& phone, Facts& facts) {
    DWORD error = 0;
    DWORD id = 0;
    DWORD type = 0;
    DWORD blockSize = 0;
    DWORD total = 0;
    DWORD available = 0;
    DWORD free = 0;
    DWORD maxFileSize = 0;
    DWORD files = 0;
    DWORD maxFiles = 0;
    const bool isAnswered = phone->EFS2_DIAG_STATFS("/", error, id, type, blockSize, total, available, free,
                                                    maxFileSize, files, maxFiles);
    if (!isAnswered || error != 0)
        return facts.Missing({"block_size", "total_bytes", "available_bytes", "free_bytes", "max_file_size",
                              "files", "max_files"},
                             isAnswered
                                 ? "the phone refused to report its file-system figures (error number " +
                                       std::to_string(error) + ")"
                                 : phone.NoResponse("the file-system figures").what());
    facts.Number("block_size", blockSize);
    facts.Number("total_bytes", uint64_t{blockSize} * total);
    facts.Number("available_bytes", uint64_t{blockSize} * available);
    facts.Number("free_bytes", uint64_t{blockSize} * free);
    facts.Number("max_file_size", maxFileSize);
    facts.Number("files", files);
    facts.Number("max_files", maxFiles);
}

} // namespace

void InfoCommand(const Job& job) {
    const Phone phone(job);
    Facts facts;
    facts.Text("port", "COM" + std::to_string(phone.Port()));
    AddVersion(phone, facts);
    AddBuild(phone, facts);
    AddState(phone, facts);
    AddFileSystem(phone, facts);
    facts.Print(job.Has("--json"));
    if (!facts.Reasons().empty())
        throw Failure(facts.Reasons());
}

} // namespace tools::qdiag
