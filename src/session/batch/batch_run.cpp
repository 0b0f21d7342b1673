#include "session/batch/batch_run.h"

#include <algorithm>
#include <exception>
#include <filesystem>
#include <thread>
#include <utility>

namespace velmara {
namespace {

using SteadyClock = std::chrono::steady_clock;
using End = BatchOutcome::End;

// An interrupt sets the control without waking anybody.
constexpr std::chrono::milliseconds kBetweenLooks(50);

double secondsSince(SteadyClock::time_point begin) {
  return std::chrono::duration<double>(SteadyClock::now() - begin).count();
}

bool isThere(const std::string& path) {
  std::error_code failure;
  return std::filesystem::exists(std::filesystem::symlink_status(path, failure));
}

End endOf(const PhotoJobResult& job) {
  switch (job.end) {
    case PhotoJobResult::End::finished:
      return End::written;
    case PhotoJobResult::End::cancelled:
      return End::cancelled;
    case PhotoJobResult::End::failed:
      break;
  }
  return End::failed;
}

}  // namespace

BatchRun::BatchRun(BatchRequest request, const PhotoJobServices& services, JobControl& control)
    : request_(std::move(request)),
      services_(services),
      control_(control),
      memory_(request_.memory) {}

void BatchRun::run() {
  const auto threads = std::min(static_cast<std::size_t>(std::max(request_.jobs, 1)),
                                std::max<std::size_t>(request_.photos.size(), 1));
  std::vector<std::jthread> others;
  for (std::size_t i = 1; i < threads; ++i) {
    try {
      others.emplace_back([this] { work(); });
    } catch (const std::system_error&) {
      break;  // Those there are do it.
    }
  }
  work();
}

void BatchRun::setPaused(bool isPaused) {
  const std::lock_guard lock(mutex_);
  isPaused_ = isPaused;
  changed_.notify_all();
}

std::vector<BatchProgress> BatchRun::underWay() const {
  const std::lock_guard lock(mutex_);
  std::vector<BatchProgress> all;
  for (const auto& [index, work] : underWay_) {
    all.push_back({index, work->control.progress(), secondsSince(work->begin)});
  }
  return all;
}

double BatchRun::progress() const {
  const std::lock_guard lock(mutex_);
  double done = static_cast<double>(ended_);
  for (const auto& [index, work] : underWay_) done += work->control.progress();
  return request_.photos.empty() ? 1.0 : done / static_cast<double>(request_.photos.size());
}

// False where the control is cancelled before it is there.
bool BatchRun::waitFor(std::unique_lock<std::mutex>& lock, const std::function<bool()>& isThere) {
  while (!isThere()) {
    if (control_.isCancelled()) return false;
    changed_.wait_for(lock, kBetweenLooks);
  }
  return true;
}

std::optional<std::size_t> BatchRun::next() {
  std::unique_lock lock(mutex_);
  const bool goesOn = waitFor(lock, [&] { return !isPaused_; });
  if (!goesOn || control_.isCancelled() || next_ == request_.photos.size()) return std::nullopt;
  return next_++;
}

void BatchRun::work() {
  while (const auto index = next()) {
    Work work{JobControl(control_), SteadyClock::now()};
    {
      const std::lock_guard lock(mutex_);
      underWay_[*index] = &work;
    }
    {
      BatchOutcome outcome;
      try {
        if (request_.began) {
          const std::lock_guard lock(telling_);
          request_.began(*index);
        }
        outcome = treat(*index, work);
      } catch (const std::exception& fault) {
        outcome.reason = fault.what();
        endTurn(*index);
      }
      outcome.seconds = secondsSince(work.begin);
      const std::lock_guard lock(telling_);
      request_.ended(*index, outcome);
    }
    // Only now are the pictures gone.
    const std::lock_guard lock(mutex_);
    underWay_.erase(*index);
    ++ended_;
    if (work.memory) memory_.giveBack(*work.memory);
    changed_.notify_all();
  }
}

// In the order of the photos, whoever is first to open its own: which of two results gets a name
// does not depend on luck.
Result<BatchTarget> BatchRun::targetInTurn(std::size_t index, const Result<LoadedPhoto>& photo) {
  std::unique_lock lock(mutex_);
  const bool isCancelled = !waitFor(lock, [&] { return turn_ == index; });
  lock.unlock();
  auto target = [&]() -> Result<BatchTarget> {
    if (isCancelled) return Error{"cancelled"};
    if (!photo) return Error{photo.error()};
    try {
      const std::lock_guard telling(telling_);
      return request_.target(index, *photo);
    } catch (const std::exception& fault) {
      return Error{fault.what()};
    }
  }();
  lock.lock();
  turn_ = index + 1;
  changed_.notify_all();
  return target;
}

// For a photo that may have failed before its turn: those after it must not wait for it.
void BatchRun::endTurn(std::size_t index) {
  std::unique_lock lock(mutex_);
  waitFor(lock, [&] { return turn_ >= index; });
  turn_ = std::max(turn_, index + 1);
  changed_.notify_all();
}

BatchOutcome BatchRun::treat(std::size_t index, Work& work) {
  BatchOutcome outcome;
  auto photo = openPhoto(request_.photos[index]);
  auto target = targetInTurn(index, photo);
  if (!target) {
    outcome.end = work.control.isCancelled() ? End::cancelled : End::failed;
    outcome.reason = target.error();
    return outcome;
  }
  outcome.output = target->output;
  const auto isKept = [&] { return target->keepsExisting && isThere(target->output.path); };
  const auto skipped = [&] {
    outcome.end = End::skipped;
    outcome.reason = target->output.path + " is there already";
    return outcome;
  };
  if (isKept()) return skipped();

  PhotoJobRequest job = request_.job(index);
  const std::int64_t bytes = memoryOfJob(job, *photo);
  job.photo = std::move(photo).value();
  job.output = target->output;
  {
    std::unique_lock lock(mutex_);
    if (!waitFor(lock, [&] { return memory_.has(bytes); })) {
      outcome.end = End::cancelled;
      return outcome;
    }
    memory_.take(bytes);
    work.memory = bytes;
  }
  outcome.job = runPhotoJob(job, services_, work.control);
  outcome.end = endOf(outcome.job);
  outcome.reason = outcome.job.reason;
  // Another program at work on the same photos may have written it meanwhile.
  const bool isRefused = outcome.end == End::failed && outcome.job.step == PhotoStep::write;
  return isRefused && isKept() ? skipped() : outcome;
}

int usualBatchJobs() {
  return std::max(static_cast<int>(std::thread::hardware_concurrency()), 2);
}

}  // namespace velmara
