// File operations over a bare line: the same requests, in the same order, as the client sends for them.
#pragma once

#include <cstddef>
#include <string>

#include "bench/bare_line.h"

/// What one request moves.
constexpr size_t kReadBlock = 1536;
constexpr size_t kWriteBlock = 512;

/// The status of a file, once.
void BareStatus(BareLine& line, const std::string& sPath);
/// Lists a folder of iEntries entries and throws when it has another number.
void BareListing(BareLine& line, const std::string& sFolder, size_t iEntries);
void BareDownload(BareLine& line, const std::string& sPath, const std::string& sLocal);
void BareUpload(BareLine& line, const std::string& sLocal, const std::string& sPath);
