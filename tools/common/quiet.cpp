#include "common/quiet.h"

namespace tools {
namespace {

bool g_isQuiet = false;

} // namespace

void SetQuiet(bool isQuiet) {
    g_isQuiet = isQuiet;
}

bool IsQuiet() {
    return g_isQuiet;
}

} // namespace tools
