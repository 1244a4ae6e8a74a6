#include "platform/win32/Win32Clock.h"

#include <windows.h>

namespace fonklav {

LocalTime Win32Clock::Now() const {
  SYSTEMTIME now{};
  GetLocalTime(&now);
  return {now.wYear, now.wMonth, now.wDay, now.wHour, now.wMinute, now.wSecond};
}

std::chrono::milliseconds Win32Clock::Ticks() const { return std::chrono::milliseconds(GetTickCount64()); }

}  // namespace fonklav
