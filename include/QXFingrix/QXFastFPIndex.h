#pragma once

#include <string>

#include "QXSystem/QXExport.h"

// The index of a .fpbin file: the same bits, stored by bit instead of by record, in a file beside it.
// Searches for the best scores use it when it is there, and find the same. A .fpbin file that has been
// changed needs a new one.

namespace QXFingrix {

namespace QXFastFPIndexState {
inline constexpr unsigned None = 0;     ///< there is no index file
inline constexpr unsigned Usable = 1;   ///< it belongs to the .fpbin file as it is now
inline constexpr unsigned Stale = 2;    ///< the .fpbin file was changed or replaced since; not used
inline constexpr unsigned Damaged = 3;  ///< it cannot be read, is cut or has wrong contents; not used
}  // namespace QXFastFPIndexState

/// The name of the index file of a .fpbin file: FILE.fpbin.slices.
QX_API std::string QXGetFastFPIndexFileName(const std::string& fpbinFile);

/// Makes the index file of a .fpbin file, replacing the one that is there. It appears when it is whole;
/// docs/IndexFile.md. About as large as the .fpbin file.
/// Shape    numThreads: 0 asks for one per processor. The bytes do not depend on it.
/// Errors   warns and returns false, what was there before left as it is, when the .fpbin file is not sound,
///          was written in the other byte order or is changed meanwhile, when it has more than 65,472 bits or
///          2^32 - 1 fingerprints or one whose index or bit count is wrong, or when the file cannot be written.
/// Threads  starts its own and waits for them.
/// Cost     O(words of the file); memory for 8 bytes per fingerprint.
QX_API bool QXMakeFastFPIndexFile(const std::string& fpbinFile, unsigned numThreads);

/// What a search would find: a QXFastFPIndexState value. Reads the header of the index, or with isChecked all
/// of it.
/// Errors   warns once of a stale or damaged index, as a search would; and of a .fpbin file that cannot be
///          read, whose index is None.
QX_API unsigned QXGetFastFPIndexState(const std::string& fpbinFile, bool isChecked = false);

}  // namespace QXFingrix
