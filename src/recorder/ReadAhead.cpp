#include "recorder/ReadAhead.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

namespace quorl {

void ReadAhead::Open(std::shared_ptr<OpenFile> file, std::int64_t begin, std::int64_t end,
                     std::int64_t hold) {
  Close();
  file_ = std::move(file);
  begin_ = begin;
  end_ = end;
  hold_ = hold;
  Follow(begin);
}

void ReadAhead::Close() {
  calls_ = std::make_unique<FileCalls>(worker_);
  file_.reset();
  pieces_.clear();
  asked_.clear();
  fault_ = {};
}

std::int64_t ReadAhead::Length(std::int64_t piece) const {
  return std::min(kPiece, end_ - piece * kPiece);
}

bool ReadAhead::IsWanted(std::int64_t piece, std::int64_t at) const {
  const auto near = [this, piece](std::int64_t from) {
    return piece >= from / kPiece && piece * kPiece < std::min(from + hold_, end_);
  };
  return near(at) || near(begin_);
}

void ReadAhead::Follow(std::int64_t at) {
  if (!file_ || fault_) return;
  at_ = at;
  std::erase_if(pieces_, [this](const auto& each) { return !IsWanted(each.first, at_); });
  for (const std::int64_t from : {at, begin_}) {
    for (std::int64_t piece = from / kPiece; IsWanted(piece, from); ++piece) Ask(piece);
  }
}

void ReadAhead::Ask(std::int64_t piece) {
  if (pieces_.contains(piece) || !asked_.insert(piece).second) return;
  calls_->Make<FileContent>(
      [file = file_, at = piece * kPiece, bytes = Length(piece)] {
        FileContent content;
        content.Bytes.resize(static_cast<std::size_t>(bytes));
        const std::int64_t got = file->ReadAt(at, content.Bytes.data(), bytes, content.Fault);
        if (!content.Fault && got < bytes) {
          content.Fault =
              Error{EIO, file->Name() + ": ends before its samples do; it was cut while it was open"};
        }
        return content;
      },
      [this, piece](FileContent content) { Arrived(piece, std::move(content)); });
}

void ReadAhead::Arrived(std::int64_t piece, FileContent content) {
  asked_.erase(piece);
  if (content.Fault) {
    fault_ = std::move(content.Fault);
  } else if (IsWanted(piece, at_)) {
    pieces_[piece] = std::move(content.Bytes);
  }
  OnArrival();
}

bool ReadAhead::Take(std::int64_t at, void* destination, std::int64_t bytes) const {
  for (std::int64_t piece = at / kPiece; piece * kPiece < at + bytes; ++piece) {
    if (!pieces_.contains(piece)) return false;
  }
  auto* to = static_cast<char*>(destination);
  for (std::int64_t left = bytes; left > 0;) {
    const std::string& piece = pieces_.find(at / kPiece)->second;
    const std::int64_t within = at % kPiece,
                       count = std::min(left, static_cast<std::int64_t>(piece.size()) - within);
    std::memcpy(to, piece.data() + within, static_cast<std::size_t>(count));
    to += count;
    at += count;
    left -= count;
  }
  return true;
}

}  // namespace quorl
