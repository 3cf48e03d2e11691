#include "ui/icons/IconReader.h"

#include "ui/icons/IconImage.h"
#include "ui/icons/ModestThread.h"

#include <QCoreApplication>

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <system_error>
#include <thread>
#include <utility>

namespace hollowfernpike {

namespace {

struct Request {
    std::vector<std::string> files;
    QSize size;
    std::function<void(const QImage&)> onRead;
};

QImage firstImage(const std::vector<std::string>& files, const QSize& size) {
    for (const auto& file : files) {
        if (QImage image = readIconImage(file, size); !image.isNull()) {
            return image;
        }
    }
    return {};
}

/// The requests, and the threads that are at work on them.
class IconThreads {
public:
    /// Never destroyed, because a thread may still be reading at the end of the process.
    static IconThreads& shared() {
        static auto* const threads = new IconThreads;
        return *threads;
    }

    bool isBusy() const { return answersDue_ > 0; }

    void add(Request request) {
        ++answersDue_;
        waiting_.push_back(std::move(request));
        startNext();
    }

    bool stop(std::chrono::milliseconds longest) {
        waiting_.clear();
        std::unique_lock lock(mutex_);
        isStopped_ = true;
        return ended_.wait_for(lock, longest, [this] { return running_ == 0; });
    }

private:
    // A thread must not look for the application object while that is being destroyed.
    IconThreads() {
        giveLargeBlocksBack();
        qAddPostRoutine([] { shared().stop(std::chrono::milliseconds{0}); });
    }

    void startNext() {
        constexpr std::size_t mostThreads = 4;
        {
            const std::scoped_lock lock(mutex_);
            if (waiting_.empty() || running_ == mostThreads) {
                return;
            }
            ++running_;
        }
        Request next = std::move(waiting_.back());
        waiting_.pop_back();
        try {
            std::thread(&IconThreads::work, this, next).detach();
        } catch (const std::system_error&) { // there are too many threads
            leave();
            answer(next, {});
        }
    }

    void work(const Request& request) {
        lowerPriorityOfThisThread();
        const QImage image = firstImage(request.files, request.size);
        const std::scoped_lock lock(mutex_);
        --running_;
        if (!isStopped_) {
            QMetaObject::invokeMethod(
                qApp, [this, request, image] { answer(request, image); }, Qt::QueuedConnection);
        }
        ended_.notify_all();
    }

    void leave() {
        const std::scoped_lock lock(mutex_);
        --running_;
    }

    void answer(const Request& request, const QImage& image) {
        --answersDue_;
        request.onRead(image);
        startNext();
    }

    std::vector<Request> waiting_;
    std::size_t answersDue_ = 0;
    std::mutex mutex_; ///< guards what follows
    std::condition_variable ended_;
    std::size_t running_ = 0;
    bool isStopped_ = false;
};

} // namespace

void readIcon(std::vector<std::string> files, const QSize& size,
              std::function<void(const QImage&)> onRead) {
    IconThreads::shared().add({std::move(files), size, std::move(onRead)});
}

bool isReadingIcons() {
    return IconThreads::shared().isBusy();
}

bool stopReadingIcons(std::chrono::milliseconds longest) {
    return IconThreads::shared().stop(longest);
}

} // namespace hollowfernpike
