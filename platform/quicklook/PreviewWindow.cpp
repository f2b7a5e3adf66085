// SPDX-License-Identifier: MIT
#include "platform/quicklook/PreviewWindow.h"

#include "platform/quicklook/BarButton.h"
#include "platform/quicklook/HostText.h"
#include "platform/quicklook/PreviewBar.h"
#include "platform/quicklook/PreviewBroker.h"
#include "platform/quicklook/PreviewFailureViewController.h"
#include "platform/quicklook/PreviewMenu.h"
#include "platform/quicklook/PreviewRootController.h"
#include "platform/quicklook/PreviewSize.h"
#include "platform/uikit/UIApplication.h"
#include "platform/uikit/UIEvent.h"
#include "platform/uikit/UIPasteboard.h"
#include "platform/uikit/UITextView.h"
#include "platform/uikit/UIWindow.h"

#include <algorithm>
#include <array>
#include <string>
#include <utility>

namespace platform {

namespace {

using Flags = UIKeyModifierFlags;

// What the user may try after what the text itself suggests.
constexpr std::array usualEncodings{
    TextEncoding::utf8,        TextEncoding::windows1252, TextEncoding::windows1250,
    TextEncoding::windows1251, TextEncoding::windows1253, TextEncoding::windows1254,
    TextEncoding::windows1255, TextEncoding::windows1256, TextEncoding::shiftJIS,
    TextEncoding::gb18030,     TextEncoding::big5,        TextEncoding::eucKR,
};

// "Cyrillic (Windows-1251)" with its first part in the user's language.
std::string userName(TextEncoding encoding)
{
    std::string name(localizedName(encoding));
    auto end = std::min(name.find(" ("), name.size());
    return hostText(name.substr(0, end)).append(name, end);
}

} // namespace

struct PreviewWindow::Command {
    std::uint8_t modifiers; // but Shift
    std::string_view character;
    UIKeyCode key;
    void (*run)(PreviewWindow&);
};

PreviewWindow::PreviewWindow(const PreviewArguments& arguments, const ExtensionManifest& manifest, URL file,
                             PreparedPreview preview, PreviewBroker& broker)
    : arguments_(arguments)
    , manifest_(manifest)
    , file_(std::move(file))
    , broker_(broker)
    , error_(std::move(preview.error))
    , reading_(std::move(preview.reading))
    , root_(std::make_shared<PreviewRootController>())
{
    if (error_) {
        reading_.reset();
        preview.controller =
            std::make_shared<PreviewFailureViewController>(file_.lastPathComponent(), *error_);
    }
    if (reading_) {
        offered_ = reading_->candidates;
        if (reading_->evidence == TextEvidence::chosen)
            kept_ = reading_->encoding;
    }
    root_->setContent(std::move(preview.controller));
}

PreviewWindow::~PreviewWindow()
{
    finder_.onChange = nullptr;
    finder_.setTextView(nullptr);
}

UITraitCollection PreviewWindow::currentTraits() const
{
    auto traits = UIApplication::shared().desktopTraits();
    if (arguments_.appearance != UIUserInterfaceStyle::unspecified)
        traits.userInterfaceStyle = arguments_.appearance;
    return traits;
}

void PreviewWindow::open()
{
    auto screen = UIWindow::availableScreenBounds();
    auto size = arguments_.size.value_or(CGSize{});
    if (!arguments_.size) {
        // The content is asked before it has a parent: what its own size is, the bar adds to.
        auto content = root_->content();
        size = suitablePreviewSize(*content, currentTraits(),
                                   {screen.size.width, screen.size.height - PreviewBar::height});
        size.height += PreviewBar::height;
    }
    setUp(std::make_shared<UIWindow>(CGRect{screen.origin, size}));
    window_->onClose = [] { UIApplication::shared().terminate(); };
    window_->makeKeyAndVisible();
    windowStands();
}

void PreviewWindow::openOffscreen(std::shared_ptr<UIWindow> window)
{
    setUp(std::move(window));
    window_->showOffscreen();
    windowStands();
    root_->bar()->nameControls();
}

void PreviewWindow::setUp(std::shared_ptr<UIWindow> window)
{
    window_ = std::move(window);
    auto title = file_.lastPathComponent();
    root_->setTitle(title);
    root_->bar()->setName(title);
    connectBar();
    showReading();
    window_->setTitle(title);
    window_->setMinimumSize({200, 80});
    if (arguments_.appearance != UIUserInterfaceStyle::unspecified)
        window_->setOverrideUserInterfaceStyle(arguments_.appearance);
    window_->setRootViewController(root_);
    window_->onUnhandledPress = [this](const UIPress& press) { return handlePress(press); };
    window_->onFirstFrame = [this] {
        root_->bar()->nameControls();
        if (onFirstFrame)
            onFirstFrame();
    };
    finder_.onChange = [this] { root_->bar()->setMatches(finder_.status()); };
}

void PreviewWindow::windowStands()
{
    contentChanged();
    focusText();
}

// --- The bar -------------------------------------------------------------------------------------

void PreviewWindow::connectBar()
{
    auto& bar = *root_->bar();
    bar.onSearch = [this](std::string_view text) {
        finder_.find(text);
        root_->bar()->setMatches(finder_.status());
    };
    bar.onNext = [this] { findOn(Way::forward); };
    bar.onPrevious = [this] { findOn(Way::backward); };
    bar.onSearchEnd = [this] {
        finder_.find({});
        focusText();
    };
    bar.onEncodingMenu = [this] { showEncodingMenu(); };
    bar.onMenu = [this] { showMenu(); };
}

void PreviewWindow::showReading()
{
    if (!reading_)
        return root_->bar()->setEncoding(std::nullopt);
    root_->bar()->setEncoding(PreviewBar::Encoding{.name = std::string(charsetName(reading_->encoding)),
                                                   .isGuess = reading_->evidence == TextEvidence::guess,
                                                   .replacements = reading_->replacements});
}

// The content is another one, and laid out.
void PreviewWindow::contentChanged()
{
    auto text = root_->textView();
    root_->bar()->setSearchable(text != nullptr);
    if (text)
        text->setLineBreak(wraps_ ? LineBreak::word : LineBreak::none);
    finder_.setTextView(text);
}

// Begins a search where there is none.
void PreviewWindow::findOn(Way way)
{
    if (finder_.text().empty())
        root_->bar()->beginSearch();
    else if (way == Way::forward)
        finder_.goToNext();
    else
        finder_.goToPrevious();
}

void PreviewWindow::focusText()
{
    if (auto text = root_->textView(); text && text->becomeFirstResponder())
        return;
    window_->makeFirstResponder(nullptr);
}

void PreviewWindow::showMenu()
{
    bool hasText = root_->textView() != nullptr;
    std::vector<PreviewMenuItem> items{
        {.title = hostText("Find"),
         .shortcut = "Ctrl+F",
         .isEnabled = hasText,
         .action = [this] { root_->bar()->beginSearch(); }},
        {.title = hostText("Wrap lines"),
         .shortcut = "Alt+Z",
         .isChecked = wraps_,
         .isEnabled = hasText,
         .beginsGroup = true,
         .action = [this] { toggleWrapping(); }},
        {.title = hostText("Larger text"),
         .shortcut = "Ctrl++",
         .action = [this] { setTextSize(larger(textSize())); }},
        {.title = hostText("Smaller text"),
         .shortcut = "Ctrl+−",
         .action = [this] { setTextSize(smaller(textSize())); }},
        {.title = hostText("Usual text size"),
         .shortcut = "Ctrl+0",
         .action = [this] { setTextSize(std::nullopt); }},
        {.title = hostText("Copy all"),
         .shortcut = "Ctrl+Shift+C",
         .isEnabled = hasText,
         .beginsGroup = true,
         .action = [this] { copyAll(); }},
        {.title = hostText("Open with default program"),
         .shortcut = "Ctrl+O",
         .action = [this] { openWithDefaultProgram(); }},
    };
    PreviewMenu::present(*root_->bar()->menuButton(), hostText("More"), std::move(items));
}

// --- Encodings -----------------------------------------------------------------------------------

std::vector<TextEncoding> PreviewWindow::candidates() const
{
    auto all = offered_;
    for (auto each : usualEncodings) {
        if (std::ranges::find(all, each) == all.end())
            all.push_back(each);
    }
    if (reading_ && std::ranges::find(all, reading_->encoding) == all.end())
        all.insert(all.begin(), reading_->encoding);
    return all;
}

void PreviewWindow::showEncodingMenu()
{
    if (!reading_)
        return;
    bool isKept = kept_ == reading_->encoding;
    std::vector<PreviewMenuItem> items{
        {.title = hostText("Next encoding"), .shortcut = "Ctrl+E", .action = [this] { cycleEncoding(); }},
        {.title = hostText("Keep for this file"),
         .isChecked = false,
         .isEnabled = !isKept,
         .action = [this] { keepEncoding(); }},
    };
    for (auto each : candidates()) {
        items.push_back({.title = userName(each),
                         .isChecked = each == reading_->encoding,
                         .beginsGroup = items.size() == 2,
                         .action = [this, each] { show(each); }});
    }
    PreviewMenu::present(*root_->bar()->encodingButton(), hostText("Encoding"), std::move(items));
}

void PreviewWindow::cycleEncoding()
{
    if (!reading_)
        return;
    auto all = candidates();
    auto present = std::ranges::find(all, reading_->encoding) - all.begin();
    for (std::size_t step = 1; step < all.size(); ++step) {
        if (show(all[(static_cast<std::size_t>(present) + step) % all.size()]))
            return;
    }
}

bool PreviewWindow::show(TextEncoding encoding)
{
    auto preview = preparePreview(manifest_, file_, encoding);
    if (!preview || preview->error || !preview->reading)
        return false;
    std::optional<LineNumber> line;
    if (auto text = root_->textView()) {
        auto& buffer = text->buffer();
        line = buffer.lineContaining(std::min(text->visibleRange().start, buffer.end()));
    }
    bool isSearching = root_->bar()->isSearching();
    finder_.setTextView(nullptr);
    reading_ = preview->reading;
    root_->setContent(preview->controller);
    setTextSize(textSize_);
    showReading();
    window_->layoutNow();
    contentChanged();
    if (auto text = root_->textView(); text && line && line->value > 0) {
        auto& buffer = text->buffer();
        text->scrollOffsetToTop(buffer.lineStart({std::min(line->value, buffer.lineCount() - 1)}));
    }
    if (!isSearching)
        focusText();
    return true;
}

void PreviewWindow::keepEncoding()
{
    if (!reading_)
        return;
    if (broker_.keepEncoding(reading_->encoding))
        kept_ = reading_->encoding;
    else
        root_->bar()->showNotice(hostText("The encoding could not be kept"));
}

// --- Wrapping, size, and what leaves the window --------------------------------------------------

void PreviewWindow::toggleWrapping()
{
    wraps_ = !wraps_;
    if (auto text = root_->textView())
        text->setLineBreak(wraps_ ? LineBreak::word : LineBreak::none);
}

UIContentSizeCategory PreviewWindow::textSize() const
{
    return root_->content()->view()->traitCollection().preferredContentSizeCategory;
}

// Of the content only: the bar stays as slim as it is.
void PreviewWindow::setTextSize(std::optional<UIContentSizeCategory> category)
{
    textSize_ = category;
    root_->content()->view()->setOverrideContentSizeCategory(category);
}

void PreviewWindow::copyAll()
{
    if (auto text = root_->textView())
        UIPasteboard::general().setString(text->text());
}

void PreviewWindow::openWithDefaultProgram()
{
    if (!broker_.openWithDefaultProgram())
        root_->bar()->showNotice(hostText("No program opened the file"));
}

// --- Keys ----------------------------------------------------------------------------------------

const PreviewWindow::Command* PreviewWindow::commandFor(const UIPress& press) const
{
    using Self = PreviewWindow;
    static constexpr auto noKey = UIKeyCode::character;
    static constexpr Command commands[] = {
        {Flags::control, "w", noKey, [](Self& self) { self.window_->close(); }},
        {Flags::control, "f", noKey, [](Self& self) { self.root_->bar()->beginSearch(); }},
        {Flags::control, "g", noKey, [](Self& self) { self.findOn(Way::forward); }},
        {Flags::control | Flags::shift, "g", noKey, [](Self& self) { self.findOn(Way::backward); }},
        {0, "", UIKeyCode::f3, [](Self& self) { self.findOn(Way::forward); }},
        {Flags::shift, "", UIKeyCode::f3, [](Self& self) { self.findOn(Way::backward); }},
        {Flags::control, "e", noKey, [](Self& self) { self.cycleEncoding(); }},
        {Flags::alternate, "z", noKey, [](Self& self) { self.toggleWrapping(); }},
        {Flags::control | Flags::shift, "c", noKey, [](Self& self) { self.copyAll(); }},
        {Flags::control, "o", noKey, [](Self& self) { self.openWithDefaultProgram(); }},
        {0, "", UIKeyCode::f10, [](Self& self) { self.showMenu(); }},
        {Flags::control, "0", noKey, [](Self& self) { self.setTextSize(std::nullopt); }},
        {0, "", UIKeyCode::escape, [](Self& self) { self.window_->close(); }},
        {0, "", UIKeyCode::space, [](Self& self) { self.window_->close(); }},
        {0, "q", noKey, [](Self& self) { self.window_->close(); }},
    };
    constexpr std::uint8_t counted = Flags::shift | Flags::control | Flags::alternate | Flags::command;
    auto held = press.modifiers.rawValue & counted;
    auto found = std::ranges::find_if(commands, [&](const Command& each) {
        if (each.modifiers != held)
            return false;
        return each.character.empty() ? each.key == press.key
                                      : each.character == press.charactersIgnoringModifiers;
    });
    return found == std::end(commands) ? nullptr : found;
}

bool PreviewWindow::handlePress(const UIPress& press)
{
    if (auto* command = commandFor(press)) {
        command->run(*this);
        return true;
    }
    // Where these stand, with Shift or without, is the keyboard's affair.
    auto& character = press.charactersIgnoringModifiers;
    bool isControl = (press.modifiers.rawValue & ~(Flags::shift | Flags::keypad)) == Flags::control;
    if (isControl && (character == "+" || character == "="))
        setTextSize(larger(textSize()));
    else if (isControl && character == "-")
        setTextSize(smaller(textSize()));
    else
        return false;
    return true;
}

} // namespace platform
