// Copies files into and out of the simulated file system.
#pragma once

#include <string>

namespace handset {

class FileSystem;

/// Copies the content of a local folder into the root of the file system, in order of name: folders, files
/// with times and permissions, symbolic links as links. Returns the reason of an error ("": none); what was
/// copied before an error remains.
std::string FillFromFolder(FileSystem& files, const std::string& localFolder);

/// Adds the content of a small handset: the folders brew, nvm and shared, some texts, a file of 300 KiB with
/// a known pattern in place of a picture, a link to a folder, and an empty folder.
void FillWithSample(FileSystem& files);

/// The byte at offset `at` of that pattern.
unsigned char SampleByte(unsigned at);

/// Copies a file, or a folder with its content, from the file system to a local path. An existing local entry
/// must be of the same kind. Returns the reason of an error ("": none).
std::string Export(const FileSystem& files, const std::string& path, const std::string& localPath);

} // namespace handset
