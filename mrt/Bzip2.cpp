#include <algorithm>
#include <bit>
#include <chrono>
#include <deque>
#include <future>
#include <thread>
#include <utility>

#include "mrt/internal/Bzip2Block.h"

namespace Routing::Mrt {
namespace {

/// bzip2: several blocks at a time, each in a thread of its own, handed out in their order.
class Bzip2 final : public Decoder {
 public:
  explicit Bzip2(Source& source) : source_(source), splitter_(source) {}

 private:
  struct Job {
    std::unique_ptr<Bzip2Block> block;
    std::future<void> decoded;  ///< of what begins as a block; the header and the end have none
  };

  std::size_t decodeSome(std::span<U8> into) override {
    while (part_.empty())
      if (!nextPart()) return 0;
    const std::size_t size = std::min(into.size(), part_.size());
    std::copy_n(part_.begin(), size, into.begin());
    part_ = part_.subspan(size);
    return size;
  }

  /// The part may be empty; false when the data have ended.
  bool nextPart() {
    if (joins_) {
      source_.pause();  // No pause can come while pieces are gathered.
      joins_ = false;
      joinWithNext();
    } else if (block_ && block_->state() == Bzip2Block::State::more) {
      block_->decode();
    } else {
      if (block_) leaveBlock();
      std::optional<Job> job = takeJob();
      if (!job) return false;
      if (job->decoded.valid()) {
        job->decoded.get();
        block_ = std::move(job->block);
        joins_ = isNothing(*block_);
      } else if (job->block->piece().startsWith(Bzip2Piece::endMark)) {
        takeEnd(job->block->piece());
      }
    }
    if (block_) part_ = block_->part();
    return true;
  }

  /// The next one, once it is done.
  std::optional<Job> takeJob() {
    lookAhead(false);
    if (jobs_.empty()) {
      if (sourceFault_) std::rethrow_exception(sourceFault_);
      return std::nullopt;
    }
    if (jobs_.front().decoded.valid()) jobs_.front().decoded.wait();
    Job job = std::move(jobs_.front());
    jobs_.pop_front();
    lookAhead(true);
    return job;
  }

  /// As many as there are processors; more would only take memory. Waits for octets no longer than
  /// for the first job, and not at all when the caller has one that is done.
  void lookAhead(bool hasOne) try {
    while (jobs_.size() < ahead_ && !sourceFault_) {
      std::optional<Source::Pausing> pausing;
      if (hasOne || !jobs_.empty())
        pausing.emplace(source_, [&] { return hasOne || isDone(jobs_.front()); });
      std::optional<Bzip2Piece> piece = splitter_.next();
      if (!piece) break;
      Job& job = jobs_.emplace_back();
      job.block = makeBlock(std::move(*piece));
      if (job.block->piece().startsWith(Bzip2Piece::blockMark))
        job.decoded = std::async([block = job.block.get()] { block->decode(); });
    }
  } catch (const Source::Pause&) {
    if (!hasOne && jobs_.empty()) throw;
  } catch (const std::system_error&) {
    // Comes after what can be decoded.
    sourceFault_ = std::current_exception();
  }

  static bool isDone(const Job& job) {
    return !job.decoded.valid() ||
           job.decoded.wait_for(std::chrono::seconds(0)) != std::future_status::timeout;
  }

  std::unique_ptr<Bzip2Block> makeBlock(Bzip2Piece piece) {
    auto idle = std::find_if(memories_.begin(), memories_.end(),
                             [](const auto& memory) { return memory.use_count() == 1; });
    if (idle == memories_.end()) idle = memories_.insert(idle, std::make_shared<Bzip2Memory>());
    return std::make_unique<Bzip2Block>(std::move(piece), *idle);
  }

  static bool isNothing(const Bzip2Block& block) {
    return block.state() == Bzip2Block::State::damaged && block.part().empty();
  }

  /// Values may look like a mark, which cuts their block in two. It happens once in 2^48 bits
  /// unless somebody means it to, so a few attempts are enough.
  void joinWithNext() {
    constexpr int attempts = 8;
    Bzip2Piece joined = block_->piece();
    for (int i = 0; i < attempts; ++i) {
      const std::optional<Job> next = takeJob();
      if (!next) return;
      joined.add(next->block->piece());
      auto whole = makeBlock(joined);
      whole->decode();
      if (isNothing(*whole)) continue;
      block_ = std::move(whole);
      return;
    }
  }

  /// A fault of the block is told after the octets that it gave.
  void leaveBlock() {
    if (block_->state() == Bzip2Block::State::damaged) {
      const Bzip2Piece& piece = block_->piece();
      piece.last && !piece.tooLong ? throwEarlyEnd() : throwDamaged();
    }
    sum_ = std::rotl(sum_, 1) ^ block_->checkSum();
    block_.reset();
  }

  /// Behind it may stand the header of more data, or zeros that fill up a block of a medium.
  void takeEnd(const Bzip2Piece& end) {
    constexpr unsigned endBits = Bzip2Piece::markBits + Bzip2Piece::sumBits;
    if (end.size() < endBits) throwEarlyEnd();
    if (end.bits(Bzip2Piece::markBits, Bzip2Piece::sumBits) != std::exchange(sum_, 0))
      throwDamaged();
    const Octets behind = Octets(end.octets).subspan((end.begin % 8 + endBits + 7) / 8);
    const bool good = end.last ? !end.tooLong && onlyZeros(behind) : isHeader(behind);
    if (!good) throw CompressionError("bzip2 data are followed by something else");
  }

  static bool isHeader(Octets octets) {
    constexpr U8 start[] = {'B', 'Z', 'h'};
    return octets.size() == 4 && std::equal(std::begin(start), std::end(start), octets.begin()) &&
           octets[3] >= '1' && octets[3] <= '9';
  }

  [[noreturn]] static void throwEarlyEnd() { throw CompressionError("bzip2 data end too early"); }
  [[noreturn]] static void throwDamaged() { throw CompressionError("bzip2 data are damaged"); }

  Source& source_;
  Bzip2Splitter splitter_;
  const std::size_t ahead_ = std::clamp(std::thread::hardware_concurrency(), 1u, 8u);
  std::vector<std::shared_ptr<Bzip2Memory>> memories_;
  std::deque<Job> jobs_;
  std::exception_ptr sourceFault_;

  std::unique_ptr<Bzip2Block> block_;
  bool joins_ = false;  ///< the block gave nothing: it is tried together with the next piece
  Octets part_;         ///< what is left of the block's
  U32 sum_ = 0;         ///< of the check sums since the header
};

}  // namespace

std::unique_ptr<Decoder> makeBzip2Decoder(Source& source) {
  return std::make_unique<Bzip2>(source);
}

}  // namespace Routing::Mrt
