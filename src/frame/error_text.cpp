// The table of texts and the map over it. The spelling of some texts is odd; callers compare them, so it
// stays.
#include "frame/error_text.h"

#include <algorithm>
#include <cstring>
#include <memory>

#include "frame/start_up.h"

namespace qvn {

constinit const ErrorTextMap* error_text_map = nullptr;

namespace {

struct ErrorRow {
  uint32_t code;
  const char* text;
};

// The first row's code is no status: its text is found by that very code and is no default for unknown ones.
// The last row ends the table and is no entry.
constexpr ErrorRow ErrorTable[] = {
    {0xCCCCCCCC, "No description for this error available"},
    {0x00000000, "No error"},
    {0x88000001, "Unclassified error"},
    {0x88000002, "Parameter 1 is invalid"},
    {0x88000003, "Parameter 2 is invalid"},
    {0x88000004, "Parameter 3 is invalid"},
    {0x88000005, "Parameter 4 is invalid"},
    {0x88000006, "Parameter 5 is invalid"},
    {0x88000007, "Parameter 6 is invalid"},
    {0x88000008, "Parameter 7 is invalid"},
    {0x88000009, "Parameter 8 is invalid"},
    {0x8800000A, "Parameter 9 is invalid"},
    {0x8800000B, "Parameter 10 is invalid"},
    {0x8800000C, "Parameter 11 is invalid"},
    {0x8800000D, "Parameter 12 is invalid"},
    {0x88000010, "Camera not found"},
    {0x88000011, "MRD camera not found"},
    {0x88000012, "Feature support is not implemented (yet?)"},
    {0x88000013, "Feature not supported by camera"},
    {0x88000014, "Invalid operation for the selected feature"},
    {0x88000015, "The API was not initialized - ZCL_Init() has to be called first"},
    {0x8800001D, "second call to ZCL_Init() : The API was already initialized"},
    {0x88000016, "The camera was not initialized before grabbing"},
    {0x88000017, "The camera is busy"},
    {0x88000018, "Invalid camera settings selected"},
    {0x88000019, "Insufficient FireWire ressources"},
    {0x8800001A, "Out of memory"},
    {0x8800001B, "Operation not allowed in this mode"},
    {0x8800001C, "Timeout period expired"},
    {0x8800001E, "The current command was aborted"},
    {0x8800001F, "Notification has to be registered with a Type"},
    {0x8A000001, "Card not present"},
    {0x8A000002, "No logical Device"},
    {0x8A000003, "Not enough memory"},
    {0x8A000004, "Not allowed in this mode"},
    {0x8A000005, "Timeout"},
    {0x8A000006, "Already started"},
    {0x8A000007, "Not started"},
    {0x8A000008, "Busy at the moment"},
    {0x8A000009, "No resources available"},
    {0x8A00000A, "No data available"},
    {0x8A00000B, "No acknowledge"},
    {0x8A00000C, "Interrupt install error"},
    {0x8A00000D, "Error waiting for busreset"},
    {0x8A00000F, "RCode not RCODE_COMPLETE"},
    {0x8A000010, "Something still pending"},
    {0x8A000011, "Input parameter range"},
    {0x8A000012, "Unrecognized chipversion"},
    {0x8A000013, "Hardware error"},
    {0x8A000014, "Not implemented"},
    {0x8A000015, "Cancelled"},
    {0x8A000016, "Memory not locked"},
    {0x8A000017, "Bus reset in between"},
    {0x8A000018, "No IsoManager present"},
    {0x8A000019, "No BusManager present"},
    {0x8A0003E9, "Card already opened"},
    {0x8A0003EA, "Card not open yet"},
    {0x8A0003EB, "No details"},
    {0x8A0003EC, "Driver not installed"},
    {0x8A0003ED, "Don't have buffers"},
    {0x8A0003EE, "Parameter error"},
    {0x8A0003EF, "Error creating WinDevice"},
    {0x8A0003F0, "Internal Windows error"},
    {0x8A0003F1, "Error DevIoCtl"},
    {0x8A0003F2, "Wrong length return data"},
    {0x8A0003F3, "Wrong handle"},
    {0x8A0003F4, "Function not implemented"},
    {0x8A0003F5, "Driver runs already"},
    {0x8A0003F6, "Couldn't start"},
    {0x8A0003F7, "Installation error"},
    {0x8A0003F8, "Driver and DLL don't match"},
    {0x8A0003F9, "Wrong nodeaddress"},
    {0x8A0003FA, "Partial info. copied"},
    {0x8A0003FB, "No memory"},
    {0x8A0003FC, "Requested function not available"},
    {0x8A0003FD, "Not connected to target"},
    {0x8A0003FE, "A pararmeter had to be adjusted"},
    {0x88000000, "General API Error"},
    {0x8A000000, "General Tarvex Error"},
    {0, nullptr},
};

// A cut text gets no terminator.
void copy_bounded(const char* text, char* buffer, uint32_t size) {
  std::memcpy(buffer, text, std::min<size_t>(size, std::strlen(text) + 1));
}

}  // namespace

void build_error_text_map() {
  auto map = std::make_unique<ErrorTextMap>();
  for (size_t row = 0; ErrorTable[row].text != nullptr; ++row) {
    map->emplace(static_cast<int32_t>(ErrorTable[row].code), row);
  }
  error_text_map = map.release();
  exit_list.add(free_error_text_map);
}

void free_error_text_map() {
  delete error_text_map;
  error_text_map = nullptr;
}

bool copy_error_text(uint32_t code, char* buffer, uint32_t size) {
  const auto found = error_text_map->find(static_cast<int32_t>(code));
  const bool known = found != error_text_map->end();
  copy_bounded(known ? ErrorTable[found->second].text : "return code not found", buffer, size);
  return known;
}

void trim_line_end(char* buffer, uint32_t size) {
  const auto* end = static_cast<const char*>(std::memchr(buffer, '\0', size));
  const size_t length = end != nullptr ? static_cast<size_t>(end - buffer) : size;
  if (length >= 3 && buffer[length - 1] == '\n' && buffer[length - 2] == '\r') buffer[length - 2] = '\0';
}

}  // namespace qvn
