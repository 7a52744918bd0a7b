#pragma once

/// The exit statuses of the program, the worse the greater but for wrong usage, which comes alone.
enum class ExitStatus { good = 0, badFile = 1, wrongUsage = 2, unreadableFile = 3 };
