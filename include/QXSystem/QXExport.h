#pragma once

/// Marks what the shared libraries export; everything else is built with hidden visibility.
#define QX_API __attribute__((visibility("default")))
