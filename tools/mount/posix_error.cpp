#include "mount/posix_error.h"

#include <cerrno>

namespace tools::mount {
namespace {

struct Row {
    DWORD phone;
    int host;
};

// 9: the phone's descriptor is lost; the program's is fine. 23 and 24: too many files are open on the phone,
// not in the program.
constexpr Row kRows[] = {
    {1, EPERM},      {2, ENOENT},  {5, EIO},         {6, EIO},     {9, EIO},     {11, EAGAIN},
    {12, ENOMEM},    {13, EACCES}, {16, EBUSY},      {17, EEXIST}, {18, EXDEV},  {19, ENODEV},
    {20, ENOTDIR},   {21, EISDIR}, {22, EINVAL},     {23, ENFILE}, {24, ENFILE}, {26, ETXTBSY},
    {27, EFBIG},     {28, ENOSPC}, {29, ESPIPE},     {30, EROFS},  {31, EMLINK}, {36, ENAMETOOLONG},
    {39, ENOTEMPTY}, {40, ELOOP},  {95, EOPNOTSUPP},
};

} // namespace

int HostErrno(DWORD phoneError) {
    for (const Row& row : kRows)
        if (row.phone == phoneError)
            return row.host;
    return EIO;
}

} // namespace tools::mount
