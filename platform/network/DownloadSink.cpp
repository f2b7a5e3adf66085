// SPDX-License-Identifier: MIT
#include "platform/network/LoadSink_p.h"

#include "platform/foundation/FileManager.h"
#include "platform/foundation/UUID.h"
#include "platform/network/BackgroundStore_p.h"
#include "platform/network/DownloadFile_p.h"
#include "platform/network/DownloadedFile.h"
#include "platform/network/HTTPMessage_p.h"
#include "platform/network/NSURLErrorCodes.h"

#include <mutex>
#include <utility>

namespace platform {

namespace {

// Shared with the delegate queue, which may be behind: one call is on its way at most.
struct Progress {
    std::mutex mutex;
    // guarded by mutex
    std::int64_t total = 0;
    std::int64_t expected = URLResponseUnknownLength;
    std::int64_t unreported = 0;
    bool isOnItsWay = false;
};

// What was loaded, on the delegate queue. A small one is made only now: where that fails, the task has failed, and its end
// says so.
class LoadedFile final : public DownloadedFile {
public:
    LoadedFile(DownloadFile& file, URLSessionTaskState& state)
        : file_(file)
        , state_(state)
    {
    }

    Result<URL> location() override
    {
        if (given_)
            return *given_;
        auto written = file_.writeOut();
        if (written)
            return file_.url();
        std::lock_guard lock(state_.mutex);
        state_.error = written.error();
        return std::unexpected(written.error());
    }
    Result<void> moveTo(const URL& destination) override
    {
        TRY(given_ ? FileManager::defaultManager().moveItem(*given_, destination)
                   : file_.giveTo(destination));
        given_ = destination;
        std::lock_guard lock(state_.mutex);
        state_.error.reset(); // it could not be made elsewhere
        return {};
    }

private:
    DownloadFile& file_;
    URLSessionTaskState& state_;
    std::optional<URL> given_;
};

class DownloadSink final : public LoadSink {
public:
    DownloadSink(std::shared_ptr<URLSessionTask> task, std::shared_ptr<URLSessionTaskState> state)
        : task_(std::static_pointer_cast<URLSessionDownloadTask>(task))
        , state_(std::move(state))
    {
        if (auto& store = state_->core->store();
            store && state_->partialPath == store->partialPath(state_->identifier))
            keeper_ = store;
    }

    HTTPTransfer::Encoding encoding() const override { return HTTPTransfer::Encoding::asStored; }
    std::int64_t byteCount() const override { return file_ ? file_->size() : 0; }

    void prepare(URLRequest& request) override
    {
        open();
        isRanged_ = canContinue() && !request.value("Range");
        if (!isRanged_)
            return;
        request.setValue("bytes=" + std::to_string(file_->size()) + "-", "Range");
        request.setValue(validator_, "If-Range");
    }

    Reception receive(const std::shared_ptr<const HTTPURLResponse>& response,
                      std::function<void(bool)>) override
    {
        if (!file_)
            return Reception::taken; // the first bytes fail
        if (isRanged_ && response->statusCode() == 206) {
            auto range = parseContentRange(response->value("Content-Range").value_or(""));
            auto tag = strongValidator(response->allHeaderFields());
            bool continues = range && range->first == file_->size() && tag == validator_
                && response->url().absoluteString() == source_
                && (!total_ || !range->total || *range->total == *total_);
            if (!continues)
                return forget();
            if (range->total)
                total_ = range->total;
            tellResumed();
            setExpected(total_.value_or(URLResponseUnknownLength));
            return Reception::taken;
        }
        // The server's own state of that range is gone; a file that grew smaller, for one.
        if (isRanged_ && response->statusCode() == 416)
            return forget();
        if (file_->size() > 0 && !file_->truncate(0))
            openError_ = urlError(NSURLErrorCannotWriteToFile, file_->url());
        bool isFile = response->statusCode() == 200 && !response->value("Content-Encoding");
        validator_ = isFile ? strongValidator(response->allHeaderFields()).value_or("") : "";
        source_ = response->url().absoluteString(); // a tag is of one resource only
        auto length = response->expectedContentLength();
        total_ = isFile && length != URLResponseUnknownLength ? std::optional(length) : std::nullopt;
        setExpected(length);
        save();
        return Reception::taken;
    }

    Result<HTTPTransfer::Intake> take(std::string_view bytes) override
    {
        if (openError_)
            return std::unexpected(*openError_);
        TRY(file_->append(bytes));
        news_ += static_cast<std::int64_t>(bytes.size());
        return HTTPTransfer::Intake::taken;
    }

    void pause() override
    {
        if (auto written = std::exchange(news_, 0); written > 0)
            tellProgress(written);
    }

    bool canContinue() const override { return file_ && file_->size() > 0 && !validator_.empty(); }

    bool isWhole() const override { return !isRanged_ || !file_ || !total_ || file_->size() == *total_; }

    // Downloads come from the network.
    bool announce(const std::shared_ptr<const URLResponse>&, std::function<void(bool)>) override
    {
        return false;
    }
    void deliver(const CachedURLResponse&) override { }

    void finish(const std::optional<Error>& error) override
    {
        auto failed = error ? error : openError_;
        if (failed && !state_->partialPath.empty())
            open(); // nobody goes on with what is there
        if (file_ && failed && !isGivenAway_)
            file_->setKept(false);
        if (!failed) {
            if (state_->downloadCompletion)
                completion_ = [state = state_, file = std::move(file_)] {
                    auto complete = std::exchange(state->downloadCompletion, nullptr);
                    auto location = LoadedFile(*file, *state).location();
                    if (!location)
                        return complete(std::unexpected(location.error()));
                    std::shared_ptr<const URLResponse> response;
                    {
                        std::lock_guard lock(state->mutex);
                        response = state->response;
                    }
                    complete(URLSession::Download{*location, response});
                };
            else
                tellFinished();
            return;
        }
        file_ = nullptr;
        forgetEntry();
        if (state_->downloadCompletion)
            completion_ = [state = state_, error = *failed] {
                std::exchange(state->downloadCompletion, nullptr)(std::unexpected(error));
            };
    }

    std::move_only_function<void()> takeCompletion() override { return std::move(completion_); }

    std::optional<Error> openError() const override { return openError_; }

    std::optional<std::string> giveResumeData() override
    {
        if (!state_->partialPath.empty())
            open(); // it may not have had its turn
        if (!canContinue())
            return std::nullopt;
        auto place = downloadDirectory() + UUID().string() + ".partial";
        auto data = encodeResumeData({*state_->originalRequest, place, validator_, source_, total_});
        if (!data || !file_->writeOut() || !file_->moveTo(place))
            return std::nullopt;
        file_->setKept(true);
        isGivenAway_ = true;
        return data;
    }

private:
    // Not before it is this one's turn: files that are open are few in a process, tasks that wait may be many.
    void open()
    {
        if (std::exchange(wasOpened_, true))
            return;
        if (state_->partialPath.empty()) {
            file_ = std::make_shared<DownloadFile>();
            return;
        }
        auto file = DownloadFile::open(state_->partialPath);
        if (!file) {
            openError_ = file.error();
            return;
        }
        file_ = std::move(*file);
        validator_ = state_->partialValidator;
        source_ = state_->partialSource;
        total_ = state_->partialTotal;
        // What may be whole already is asked for its last byte again: a range needs one.
        if (total_ && file_->size() >= *total_ && !file_->truncate(*total_ > 0 ? *total_ - 1 : 0))
            validator_.clear();
        // The process may end at any moment; then the next one goes on with it.
        file_->setKept(keeper_ != nullptr);
    }

    Reception forget()
    {
        validator_.clear();
        total_ = std::nullopt;
        if (!file_->truncate(0))
            openError_ = urlError(NSURLErrorCannotWriteToFile, file_->url());
        return Reception::refused;
    }

    void setExpected(std::int64_t expected)
    {
        {
            std::lock_guard lock(state_->mutex);
            state_->expected = expected;
        }
        std::lock_guard lock(progress_->mutex);
        progress_->expected = expected;
        progress_->total = file_->size();
    }

    // What a later start needs in order to go on.
    void save()
    {
        if (!keeper_)
            return;
        std::string description;
        {
            std::lock_guard lock(state_->mutex);
            description = state_->description;
        }
        keeper_->put(
            {state_->identifier, *state_->originalRequest, description, validator_, source_, total_});
    }
    void forgetEntry()
    {
        if (keeper_)
            keeper_->remove(state_->identifier);
    }

    void tellResumed()
    {
        state_->core->tell<URLSessionDownloadDelegate>(
            task_,
            [state = state_, task = task_, offset = file_->size(),
             total = total_.value_or(URLResponseUnknownLength)](auto& delegate) {
                delegate.urlSessionDownloadTaskDidResumeAtOffset(*state->session, task, offset, total);
            });
    }

    void tellProgress(std::int64_t written)
    {
        if (state_->downloadCompletion)
            return;
        {
            std::lock_guard lock(progress_->mutex);
            progress_->total = file_->size();
            progress_->unreported += written;
            if (std::exchange(progress_->isOnItsWay, true))
                return;
        }
        state_->core->enqueue([state = state_, task = task_, progress = progress_] {
            std::int64_t total = 0;
            std::int64_t expected = 0;
            std::int64_t news = 0;
            {
                std::lock_guard lock(progress->mutex);
                progress->isOnItsWay = false;
                total = progress->total;
                expected = progress->expected;
                news = std::exchange(progress->unreported, 0);
            }
            if (auto delegate = state->core->listenerOf<URLSessionDownloadDelegate>(*task))
                delegate->urlSessionDownloadTaskDidWriteData(*state->session, task, news, total, expected);
        });
    }

    void tellFinished()
    {
        state_->core->enqueue([state = state_, task = task_, keeper = keeper_, file = std::move(file_)] {
            auto delegate = state->core->delegateOf<URLSessionDownloadDelegate>(*task);
            LoadedFile loaded(*file, *state);
            if (delegate)
                delegate->urlSessionDownloadTaskDidReceiveFile(*state->session, task, loaded);
            // Only now: whoever is stopped before that hears of it at the next start.
            file->setKept(false);
            if (keeper)
                keeper->remove(state->identifier);
        });
    }

    // fixed after construction
    std::shared_ptr<URLSessionDownloadTask> task_;
    std::shared_ptr<URLSessionTaskState> state_;
    std::shared_ptr<BackgroundStore> keeper_;
    std::shared_ptr<Progress> progress_ = std::make_shared<Progress>();

    std::shared_ptr<DownloadFile> file_; // null before its turn, when it could not be made, and after the end
    bool wasOpened_ = false;
    std::optional<Error> openError_;
    std::string validator_; // of what the file has; empty: it cannot be continued
    std::string source_;    // what the validator is of
    std::optional<std::int64_t> total_;
    std::int64_t news_ = 0; // bytes that the delegate has not heard of
    bool isRanged_ = false;
    bool isGivenAway_ = false;
    std::move_only_function<void()> completion_;
};

} // namespace

std::unique_ptr<LoadSink> makeDownloadSink(std::shared_ptr<URLSessionTask> task,
                                           std::shared_ptr<URLSessionTaskState> state)
{
    return std::make_unique<DownloadSink>(std::move(task), std::move(state));
}

} // namespace platform
