// Reads an NV item of the phone. With a text, writes that to the item first.
//
//     $ nv_items 1 71
//     item 71: 71 75 69 6C 6C 65 74
//
//     $ nv_items 1 71 hello
//     item 71: 68 65 6C 6C 6F
//
//     $ nv_items 1 9
//     the phone refuses to read item 9 (status 5)
//     [exit status 1]
//
//     $ nv_items 1 0 hello
//     the phone refuses to write item 0 (status 7)
//     [exit status 1]
#include <quillet.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace {

/// Prints why an operation failed. Returns whether it succeeded.
bool Check(bool isAnswered, unsigned short status, const char* operation, unsigned item) {
    if (!isAnswered)
        std::fprintf(stderr, "no usable response to the request to %s item %u\n", operation, item);
    else if (status != 0)
        std::fprintf(stderr, "the phone refuses to %s item %u (status %u)\n", operation, item, status);
    return isAnswered && status == 0;
}

bool Write(Diag_FTM& phone, unsigned short item, const char* text) {
    unsigned short status = 0;
    const auto* data = reinterpret_cast<const unsigned char*>(text);
    const bool isAnswered =
        phone.DIAG_NV_WRITE_F(item, data, static_cast<int>(std::strlen(text)), status); // zeros follow
    return Check(isAnswered, status, "write", item);
}

bool Show(Diag_FTM& phone, unsigned short item) {
    unsigned char data[NvItems::kItemSize] = {};
    unsigned short status = 0;
    const bool isAnswered = phone.DIAG_NV_READ_F(item, data, sizeof data, status);
    if (!Check(isAnswered, status, "read", item))
        return false;
    size_t length = sizeof data;
    while (length > 0 && data[length - 1] == 0)
        --length;
    std::printf("item %u:", item);
    for (size_t i = 0; i < length; ++i)
        std::printf(" %02X", data[i]);
    std::printf("\n");
    return true;
}

} // namespace

int main(int count, char** words) {
    const int port = count > 1 ? std::atoi(words[1]) : 0;
    const int number = count > 2 ? std::atoi(words[2]) : -1;
    const char* text = count == 4 ? words[3] : "";
    if (port <= 0 || number < 0 || number > 0xFFFF || count > 4 || std::strlen(text) > NvItems::kItemSize) {
        std::fprintf(stderr, "usage: nv_items PORT ITEM [TEXT of at most 128 bytes]\n");
        return 2;
    }
    const auto item = static_cast<unsigned short>(number);
    Diag_FTM phone(port);
    phone.ConfigureTimeOut(QMSL_TimeOut_PhoneCheck, 1000); // a busy phone needs more than the usual 80 ms
    if (!phone.IsPhoneConnected()) {
        std::fprintf(stderr, "%s\n", PortErrorText(phone.GetPortError(), "the port").c_str());
        return 1;
    }
    if (count == 4 && !Write(phone, item, text))
        return 1;
    return Show(phone, item) ? 0 : 1;
}
