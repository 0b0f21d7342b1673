#include "session/batch/batch_list.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <utility>

namespace velmara {
namespace {

using State = BatchEntry::State;

constexpr Seconds kBetweenTicks(0.15);
// Sooner a guess would only jump about.
constexpr double kLeastProgressToTellBy = 0.01;
constexpr Seconds kLeastTimeToTellBy(3.0);

State stateOf(BatchOutcome::End end) {
  switch (end) {
    case BatchOutcome::End::written:
      return State::written;
    case BatchOutcome::End::skipped:
      return State::skipped;
    case BatchOutcome::End::cancelled:
      return State::cancelled;
    case BatchOutcome::End::failed:
      break;
  }
  return State::failed;
}

std::string absolute(const std::string& path) {
  std::error_code failure;
  const auto whole = std::filesystem::absolute(path, failure);
  return failure ? path : whole.lexically_normal().string();
}

}  // namespace

// What a run's threads work with; it stays until the last of them is done.
struct BatchList::Run {
  Run(const PhotoJobServices& jobServices, std::vector<BatchPhoto> photos, BatchNaming naming)
      : services(jobServices), targets(std::move(photos), std::move(naming)) {}

  const PhotoJobServices services;
  JobControl control;
  BatchTargets targets;
  std::vector<Treatment> treatments;
  std::unique_ptr<BatchRun> batch;
};

BatchList::BatchList(PhotoJobServices services, Scheduler& timers, const Clock& clock)
    : services_(std::move(services)), timers_(timers), clock_(clock) {}

BatchList::~BatchList() {
  looking_->cancel();
  if (run_) run_->control.cancel();
}

void BatchList::add(std::vector<std::string> paths) {
  if (paths.empty()) return;
  ++searches_;
  Q_EMIT stateChanged();
  services_.globalQueue.async([this, paths = std::move(paths), control = looking_,
                               &mainQueue = services_.mainQueue, token = std::weak_ptr(token_)] {
    auto photos = findPhotos(
        {.paths = paths, .isRecursive = true}, [](const std::string&, const std::string&) {},
        *control);
    mainQueue.async([this, token, photos = std::move(photos)] {
      if (!token.expired()) addFound(photos);
    });
  });
}

void BatchList::addFound(const std::vector<BatchPhoto>& photos) {
  std::set<std::string> known;
  for (const BatchEntry& entry : entries_) known.insert(absolute(entry.photo.path));
  for (const BatchPhoto& photo : photos) {
    if (known.insert(absolute(photo.path)).second) entries_.push_back({photo});
  }
  --searches_;
  Q_EMIT entriesChanged();
  Q_EMIT stateChanged();
  lookAtNext();
}

void BatchList::remove(const std::vector<std::size_t>& indices) {
  if (isRunning()) return;
  const std::set<std::size_t> going(indices.begin(), indices.end());
  std::vector<BatchEntry> staying;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    if (!going.contains(i)) staying.push_back(std::move(entries_[i]));
  }
  entries_ = std::move(staying);
  lastRun_.clear();
  Q_EMIT entriesChanged();
}

void BatchList::setTreatment(std::size_t index, std::optional<Treatment> treatment) {
  if (isRunning() || index >= entries_.size()) return;
  entries_[index].treatment = treatment;
  // Its result is of another kind now.
  if (entries_[index].state == State::written) entries_[index].state = State::waiting;
  Q_EMIT entryChanged(static_cast<int>(index));
}

// One at a time, and none while a run has the processors.
void BatchList::lookAtNext() {
  if (isLooking_ || isRunning()) return;
  const auto next = std::ranges::find_if(entries_, [](const BatchEntry& entry) {
    return !entry.facts && entry.state != State::failed;
  });
  if (next == entries_.end()) return;
  isLooking_ = true;
  services_.globalQueue.async([this, path = next->photo.path, control = looking_,
                               services = services_, token = std::weak_ptr(token_)] {
    auto facts = readPhotoFacts(path, services.engine, *control);
    services.mainQueue.async([this, token, path, facts = std::move(facts)] {
      if (token.expired()) return;
      isLooking_ = false;
      // It may have moved meanwhile, or gone, or been worked on.
      const auto entry = std::ranges::find_if(
          entries_, [&](const BatchEntry& known) { return known.photo.path == path; });
      if (entry != entries_.end() && !entry->facts && !isRunning()) {
        if (facts) {
          entry->facts = *facts;
        } else {
          entry->state = State::failed;
          entry->reason = facts.error();
        }
        Q_EMIT entryChanged(static_cast<int>(entry - entries_.begin()));
      }
      lookAtNext();
    });
  });
}

std::vector<std::size_t> BatchList::photosToRun() const {
  std::vector<std::size_t> open, all;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    all.push_back(i);
    if (entries_[i].state != State::written) open.push_back(i);
  }
  return open.empty() ? all : open;
}

void BatchList::start(const Treatment& treatmentOfAll, BatchNaming naming) {
  if (isRunning() || entries_.empty()) return;
  lastRun_ = photosToRun();
  std::vector<BatchPhoto> photos;
  for (const std::size_t index : lastRun_) photos.push_back(entries_[index].photo);
  auto run = std::make_shared<Run>(services_, photos, std::move(naming));
  BatchRequest request;
  for (const std::size_t index : lastRun_) {
    BatchEntry& entry = entries_[index];
    entry.state = State::waiting;
    entry.reason.clear();
    entry.progress = 0.0;
    request.photos.push_back(entry.photo.path);
    run->treatments.push_back(entry.treatment.value_or(treatmentOfAll));
  }
  request.job = [run = run.get()](std::size_t index) {
    PhotoJobRequest job;
    job.mode = run->treatments[index].mode;
    job.isDeep = run->treatments[index].isDeep;
    return job;
  };
  request.target = [run = run.get()](std::size_t index, const LoadedPhoto& photo) {
    return run->targets.target(index, photo);
  };
  const auto tell = [&mainQueue = services_.mainQueue, token = std::weak_ptr(token_)](auto told) {
    mainQueue.async([token, told = std::move(told)] {
      if (!token.expired()) told();
    });
  };
  request.began = [this, tell](std::size_t index) { tell([this, index] { began(index); }); };
  request.ended = [this, tell](std::size_t index, const BatchOutcome& outcome) {
    PhotoFacts facts = factsOf(outcome.job);
    BatchOutcome end;  // Without the pictures.
    end.end = outcome.end;
    end.reason = outcome.reason;
    end.output = outcome.output;
    tell([this, index, end, facts = std::move(facts)] { ended(index, end, facts); });
  };
  request.jobs = usualBatchJobs();
  request.memory = usualBatchMemory();
  run->batch = std::make_unique<BatchRun>(std::move(request), run->services, run->control);

  run_ = run;
  isPaused_ = false;
  paused_ = {};
  begin_ = clock_.monotonic();
  ticks_ = timers_.start(kBetweenTicks, true, [this] { showProgress(); });
  services_.globalQueue.async([this, run, tell] {
    run->batch->run();
    tell([this] { runEnded(); });
  });
  Q_EMIT entriesChanged();
  Q_EMIT stateChanged();
}

void BatchList::setPaused(bool isPaused) {
  if (!isRunning() || isPaused == isPaused_) return;
  isPaused_ = isPaused;
  run_->batch->setPaused(isPaused);
  if (isPaused) {
    pauseBegin_ = clock_.monotonic();
  } else {
    paused_ += clock_.monotonic() - pauseBegin_;
  }
  Q_EMIT stateChanged();
}

void BatchList::cancel() {
  if (run_) run_->control.cancel();
}

void BatchList::began(std::size_t index) {
  BatchEntry& entry = entries_[lastRun_[index]];
  entry.state = State::working;
  Q_EMIT entryChanged(static_cast<int>(lastRun_[index]));
}

void BatchList::ended(std::size_t index, BatchOutcome outcome, const PhotoFacts& facts) {
  BatchEntry& entry = entries_[lastRun_[index]];
  entry.state = stateOf(outcome.end);
  entry.reason = std::move(outcome.reason);
  if (entry.state == State::written) {
    entry.output = outcome.output.path;
    // What was measured before a run is not forgotten where the job had no need of it.
    const PhotoFacts before = entry.facts.value_or(PhotoFacts{});
    entry.facts = facts;
    if (facts.psnr == 0.0) entry.facts->psnr = before.psnr;
    entry.facts->isBeyondLevels = facts.isBeyondLevels || before.isBeyondLevels;
  }
  Q_EMIT entryChanged(static_cast<int>(lastRun_[index]));
}

void BatchList::runEnded() {
  run_.reset();
  ticks_.reset();
  isPaused_ = false;
  for (const std::size_t index : lastRun_) {
    if (entries_[index].state == State::waiting) entries_[index].state = State::cancelled;
  }
  Q_EMIT entriesChanged();
  Q_EMIT stateChanged();
  lookAtNext();
}

void BatchList::showProgress() {
  for (const BatchProgress& work : run_->batch->underWay()) {
    const std::size_t index = lastRun_[work.index];
    entries_[index].progress = work.progress;
    Q_EMIT entryChanged(static_cast<int>(index));
  }
  Q_EMIT progressed();
}

double BatchList::progress() const {
  return run_ ? run_->batch->progress() : 0.0;
}

std::chrono::duration<double> BatchList::activeTime() const {
  return clock_.monotonic() - begin_ - paused_;
}

std::optional<Seconds> BatchList::timeLeft() const {
  const double done = progress();
  const Seconds taken = run_ ? activeTime() : Seconds(0);
  if (isPaused_ || done < kLeastProgressToTellBy || taken < kLeastTimeToTellBy) return {};
  return taken * ((1.0 - done) / done);
}

BatchCounts BatchList::counts() const {
  BatchCounts counts;
  counts.all = static_cast<int>(lastRun_.size());
  for (const std::size_t index : lastRun_) {
    const State state = entries_[index].state;
    counts.written += state == State::written;
    counts.skipped += state == State::skipped;
    counts.failed += state == State::failed;
    counts.cancelled += state == State::cancelled;
  }
  return counts;
}

}  // namespace velmara
