// Content for the simulated file system, and content out of it.
#pragma once

#include <string>

namespace handset {

class FileSystem;

/// Copies what lies below a local folder into the root of the file system: folders, files with their times
/// and permissions, symbolic links as they are; in the order of their names. Gives what went wrong ("" :
/// nothing); what was copied until then stays.
std::string FillFromFolder(FileSystem& files, const std::string& localFolder);

/// Fills in a small phone: folders brew, nvm, shared; texts, a picture-sized file of about 300 kB with
/// a known pattern, a link to a folder, an empty folder.
void FillWithSample(FileSystem& files);

/// Byte number `at` of the picture-sized file.
unsigned char SampleByte(unsigned at);

/// Copies a file, or a folder with all below it, from the file system to a local path, which must not exist
/// as something else. Gives what went wrong ("" : nothing).
std::string Export(const FileSystem& files, const std::string& path, const std::string& localPath);

} // namespace handset
