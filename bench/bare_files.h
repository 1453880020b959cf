// File operations over a bare line: the same requests, in the same order, as the client sends for them.
#pragma once

#include <cstddef>
#include <string>

#include "bench/bare_line.h"

/// Bytes that one request transfers.
constexpr size_t kReadBlock = 1536;
constexpr size_t kWriteBlock = 512;

/// Requests the status of a file once.
void BareStatus(BareLine& line, const std::string& sPath);
/// Lists a folder. Throws unless it has iEntries entries.
void BareListing(BareLine& line, const std::string& sFolder, size_t iEntries);
void BareDownload(BareLine& line, const std::string& sPath, const std::string& sLocal);
void BareUpload(BareLine& line, const std::string& sLocal, const std::string& sPath);
