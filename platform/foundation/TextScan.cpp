// SPDX-License-Identifier: MIT
#include "platform/foundation/TextScan_p.h"

#include "platform/foundation/ByteScan_p.h"
#include "platform/foundation/Precondition.h"
#include "platform/foundation/UTF8.h"

#include <algorithm>
#include <atomic>
#include <system_error>
#include <thread>

namespace platform {

namespace {

// Below this the second thread has hardly begun when the first is done.
constexpr std::size_t sizeWorthThreads = 4 * 1024 * 1024;
// Beyond a few cores memory is the limit.
constexpr unsigned mostThreads = 4;

bool isContinuation(char byte)
{
    return (static_cast<unsigned char>(byte) & 0xC0) == 0x80;
}

std::size_t openBeginning(std::string_view text)
{
    std::size_t count = 0;
    while (count < std::min<std::size_t>(3, text.size()) && isContinuation(text[count]))
        ++count;
    return count;
}

// A piece is judged without its neighbours: bytes at its borders that may belong to a character cut in two are
// left out of what it has validated, and looked at when all pieces are there. In the same way a CR at its
// end counts as a line end of its own until it is known whether a line feed follows.
struct Piece {
    std::size_t end = 0; // what was filled
    std::size_t validatedBegin = 0;
    std::size_t validatedEnd = 0;
};

class Scan {
public:
    Scan(const char* text, std::size_t size, TextScanKind kind, const FillPiece& fill,
         const TextScanOptions& options)
        : text_(text)
        , size_(size)
        , kind_(kind)
        , fill_(fill)
        , options_(options)
        , piecesPerTurn_(options.piecesPerTurn)
        , pieces_((size + options.pieceSize - 1) / options.pieceSize)
        , blocks_(kind == TextScanKind::fill ? 0 : (size + options.blockSize - 1) / options.blockSize)
    {
    }

    void run(unsigned threads)
    {
        // Turns enough that all threads come to the end at about the same time.
        piecesPerTurn_ = std::clamp(pieces_.size() / (threads * 4), std::size_t(1), options_.piecesPerTurn);
        std::vector<std::jthread> others;
        for (unsigned i = 1; i < threads; ++i) {
            try {
                others.emplace_back([this] { work(); });
            } catch (const std::system_error&) {
                break; // no more threads to be had: those that run do all the work
            }
        }
        work();
    }

    TextScanResult result();

private:
    void work();
    void handlePiece(std::size_t index);
    void survey(std::size_t begin, std::size_t end, bool& isASCII);
    bool areGapsWellFormed(std::size_t pieceCount) const;
    TextSurvey finishedSurvey(std::size_t pieceCount);
    std::string_view bytes(std::size_t begin, std::size_t end) const { return {text_ + begin, end - begin}; }

    const char* text_;
    std::size_t size_; // lowered in result() when the end was met before
    const TextScanKind kind_;
    const FillPiece& fill_;
    const TextScanOptions& options_;
    std::size_t piecesPerTurn_; // fixed before the threads start
    // each written by the one thread that has the piece, read when all are done
    std::vector<Piece> pieces_;
    std::vector<TextSurvey::Block> blocks_;
    // shared by the threads
    std::atomic<std::size_t> nextTurn_ = 0;
    std::atomic<bool> isStopped_ = false;
    std::atomic<bool> isWellFormed_ = true;
    std::atomic<int> errorNumber_ = 0;
};

void Scan::work()
{
    while (true) {
        auto turn = nextTurn_.fetch_add(1, std::memory_order_relaxed);
        auto begin = turn * piecesPerTurn_;
        if (begin >= pieces_.size())
            return;
        auto end = std::min(begin + piecesPerTurn_, pieces_.size());
        for (auto index = begin; index < end; ++index) {
            if (isStopped_.load(std::memory_order_relaxed))
                return;
            handlePiece(index);
        }
    }
}

void Scan::handlePiece(std::size_t index)
{
    auto begin = index * options_.pieceSize;
    auto end = std::min(begin + options_.pieceSize, size_);
    if (fill_) {
        auto count = fill_(begin, end);
        if (count < 0) {
            errorNumber_ = static_cast<int>(-count);
            isStopped_ = true;
            return;
        }
        end = begin + static_cast<std::size_t>(count);
    }
    auto& piece = pieces_[index];
    piece = {.end = end, .validatedBegin = begin, .validatedEnd = end};
    if (kind_ == TextScanKind::fill || begin == end)
        return;
    bool isASCII = true;
    survey(begin, end, isASCII);
    if (kind_ == TextScanKind::survey || isASCII)
        return;
    if (begin > 0)
        piece.validatedBegin += openBeginning(bytes(begin, end));
    piece.validatedEnd -= openSequenceSize(bytes(piece.validatedBegin, end));
    if (!isWellFormedUTF8(bytes(piece.validatedBegin, piece.validatedEnd))) {
        isWellFormed_ = false;
        isStopped_ = true;
    }
}

void Scan::survey(std::size_t begin, std::size_t end, bool& isASCII)
{
    for (auto at = begin; at < end; at += options_.blockSize) {
        auto blockEnd = std::min(at + options_.blockSize, end);
        auto next = blockEnd < end && text_[blockEnd] == '\n' ? NextByte::lineFeed : NextByte::other;
        auto counts = countBlock(bytes(at, blockEnd), next);
        isASCII = isASCII && counts.isASCII;
        blocks_[at / options_.blockSize] = {
            .lineEnds = counts.lineEnds, .characters = counts.characters, .isASCII = counts.isASCII};
    }
}

// What lies between the validated parts begins and ends between two characters, if the text is well-formed.
bool Scan::areGapsWellFormed(std::size_t pieceCount) const
{
    std::size_t validated = 0;
    for (std::size_t i = 0; i < pieceCount; ++i) {
        auto& piece = pieces_[i];
        if (piece.validatedBegin == piece.validatedEnd)
            continue; // a piece of a few bytes may be all border
        if (!isWellFormedUTF8(bytes(validated, piece.validatedBegin)))
            return false;
        validated = piece.validatedEnd;
    }
    return isWellFormedUTF8(bytes(validated, size_));
}

TextSurvey Scan::finishedSurvey(std::size_t pieceCount)
{
    TextSurvey survey{.blockSize = options_.blockSize, .size = size_};
    blocks_.resize((size_ + options_.blockSize - 1) / options_.blockSize);
    for (std::size_t i = 0; i + 1 < pieceCount; ++i) {
        auto border = pieces_[i].end;
        if (border < size_ && text_[border - 1] == '\r' && text_[border] == '\n')
            --blocks_[(border - 1) / options_.blockSize].lineEnds;
    }
    for (auto& block : blocks_) {
        block.lineEndsBefore = survey.lineEnds;
        block.charactersBefore = survey.characters;
        survey.lineEnds += block.lineEnds;
        survey.characters += block.characters;
        survey.isASCII = survey.isASCII && block.isASCII;
    }
    survey.blocks = std::move(blocks_);
    return survey;
}

TextScanResult Scan::result()
{
    if (int number = errorNumber_)
        return {.errorNumber = number};
    if (!isWellFormed_)
        return {.isWellFormed = false};
    // The text ends in the first piece that was not filled; what lies beyond was read before it shrank.
    std::size_t pieceCount = 0;
    for (bool isFull = true; isFull && pieceCount < pieces_.size(); ++pieceCount)
        isFull = pieces_[pieceCount].end == std::min((pieceCount + 1) * options_.pieceSize, size_);
    size_ = pieceCount == 0 ? 0 : pieces_[pieceCount - 1].end;
    if (kind_ == TextScanKind::fill)
        return {.size = size_};
    if (kind_ == TextScanKind::validateAndSurvey && !areGapsWellFormed(pieceCount))
        return {.isWellFormed = false};
    return {.size = size_, .survey = finishedSurvey(pieceCount)};
}

} // namespace

TextScanResult scanText(const char* text, std::size_t size, TextScanKind kind, const FillPiece& fill,
                        const TextScanOptions& options)
{
    precondition(options.blockSize > 0 && options.pieceSize > 0 && options.piecesPerTurn > 0,
                 "a text is scanned in pieces of no bytes; the sizes of TextScanOptions are at least 1");
    precondition(options.pieceSize % options.blockSize == 0,
                 "the piece size of TextScanOptions is not a multiple of its block size");
    auto threads = options.threads;
    if (threads == 0)
        threads =
            size < sizeWorthThreads ? 1 : std::clamp(std::thread::hardware_concurrency(), 1u, mostThreads);
    Scan scan(text, size, kind, fill, options);
    scan.run(threads);
    return scan.result();
}

} // namespace platform
