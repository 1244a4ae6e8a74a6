#pragma once

namespace fonklav {

class Clock;
class CodePage;
class DdeTransport;
class FileSystem;
class IconPainter;
class MessageBoxes;
class MessageLoop;
class NumberLocale;
class PrivateProfile;
class Process;
class ShellFolders;
class Telephony;

/// All that the program asks of the system, one reference a port. Whoever builds a program supplies them; they outlive
/// it.
struct Ports {
  Clock& clock;
  CodePage& codePage;
  DdeTransport& dde;
  FileSystem& files;
  IconPainter& icons;
  MessageBoxes& messageBoxes;
  MessageLoop& loop;
  NumberLocale& numberLocale;
  PrivateProfile& profile;
  Process& process;
  ShellFolders& shellFolders;
  Telephony& telephony;
};

}  // namespace fonklav
