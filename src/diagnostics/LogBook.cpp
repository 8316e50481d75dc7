#include "diagnostics/LogBook.h"

#include <cstdio>
#include <utility>

namespace quorl {
namespace {

std::string FirstLine(const LocalTime& now) {
  char text[96];
  std::snprintf(text, sizeof text, "QUORLSDR Log File Started at Date=%04d-%02d-%02d Time=%02d:%02d:%02d\n",
                now.Year, now.Month, now.Day, now.Hour, now.Minute, now.Second);
  return text;
}

}  // namespace

LogBook::LogBook(Files& files, const Clock& clock, std::string path)
    : files_(files), clock_(clock), path_(std::move(path)) {}

void LogBook::Start(bool trace) {
  trace_ = trace;
  if (!trace) return;
  const std::size_t slash = path_.rfind('/');
  Failure failure;
  if (slash != std::string::npos && slash > 0) failure = files_.MakeDirectory(path_.substr(0, slash));
  if (!failure) failure = files_.Replace(path_, FirstLine(clock_.Now()));
  Report(failure);
}

void LogBook::AddLog(const std::string& text) {
  if (trace_) Report(files_.Append(path_, text + "\n"));
  AddToList(text);
}

void LogBook::AddError(const std::string& place, int code, const std::string& description,
                       const std::string& source) {
  AddLog("Error:" + place + ",Code=" + std::to_string(code) + ",Description=" + description +
         ",Source=" + source);
}

void LogBook::AddToList(const std::string& text) {
  if (lines_.size() == kMostLines) lines_.pop_front();
  lines_.push_back(text);
  OnLine(text);
}

void LogBook::Report(const Failure& failure) {
  if (failure && !std::exchange(failureReported_, true)) AddToList(failure->Text);
}

}  // namespace quorl
