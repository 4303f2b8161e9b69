// Paths between their two forms: bytes, as the file system has them, and wide strings, as hosts and records carry them.
#pragma once

#include <string>

/// The wide form of a UTF-8 path. A byte b that is not part of well-formed UTF-8 becomes U+DC00 + b, so that every name
/// the file system accepts has a wide form of its own. Throws std::bad_alloc only.
std::wstring Utf8ToWide(const std::string& path);

/// The bytes of a wide path: the inverse of Utf8ToWide. U+DC80 to U+DCFF give back their byte, all else is encoded as
/// UTF-8. Throws std::range_error for a unit that stands for no byte and no character.
std::string WideToUtf8(const std::wstring& path);
