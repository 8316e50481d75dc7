// Everything that the receiver asks of a machine, in one place to hand around.
#pragma once

namespace quorl {

class Clock;
class Dialogs;
class EventQueue;
class FileWorker;
class Files;
class InstanceLock;
class PrinterPort;
class Processes;
class SerialPort;
class Sockets;
class SoundFiles;
class SoundSystem;

// References to objects that outlive whoever is handed them.
struct Machine {
  EventQueue& Queue;
  const Clock& Time;
  Dialogs& Boxes;
  Files& Storage;
  FileWorker& Beside;  // works on files while the sound plays
  SoundFiles& Media;
  InstanceLock& Instance;
  SoundSystem& Sound;
  SerialPort& Serial;
  PrinterPort& Printer;
  Processes& Programs;
  Sockets& Network;
};

}  // namespace quorl
