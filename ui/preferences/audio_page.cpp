#include "ui/preferences/audio_page.h"

#include <span>

#include <QVBoxLayout>

#include "app/preference_table.h"
#include "conversion/conversion_settings.h"
#include "support/vantor.h"
#include "ui/preferences/preference_controls.h"
#include "ui/preferences/preference_page.h"
#include "ui/widgets/qt_text.h"

namespace reelvane {
namespace {

/// "128k" as a person reads it.
PreferenceChoices bitrateChoices(std::span<const std::string_view> bitrates) {
    PreferenceChoices choices;
    for (auto bitrate : bitrates) {
        bitrate.remove_suffix(1);
        choices.push_back({.value = static_cast<int>(choices.size()),
                           .title = QObject::tr("%1 kbit/s").arg(toQString(bitrate))});
    }
    return choices;
}

QString volumeMeaning(int percent) {
    if (percent == 0) return QObject::tr("The converted movie will be silent.");
    if (leavesVolume(static_cast<float>(percent))) {
        return QObject::tr("As loud as the original.");
    }
    if (percent < 100) return QObject::tr("Quieter than the original.");
    return QObject::tr(
        "Louder than the original: loud scenes may clip, which sounds harsh and cannot be undone.");
}

}  // namespace

AudioPage::AudioPage(const UiContext& context, QWidget* parent)
    : PreferencePage(context.vantor.preferences(), tr("Audio"), parent),
      context_(context) {
    addStyles();
    addTracks();
    addQuality();
}

void AudioPage::addStyles() {
    column().addHeading(tr("Audio Conversion Settings"));
    auto& style = column().add<PreferenceRadioButtons>(
        {.key = kConversionPreset.key,
         .label = tr("Conversion style"),
         .help = tr("What becomes of sound that is not AAC.")},
        PreferenceChoices{
            {.value = static_cast<int>(ConversionPreset::Compatible),
             .title = tr("Compatible"),
             .help = tr("The sound becomes AAC stereo, which every Apple device plays.")},
            {.value = static_cast<int>(ConversionPreset::Fast),
             .title = tr("High Speed & Quality"),
             .help = tr("Sound is copied where possible, which is fast and loses nothing; some "
                        "devices, such as phones, may then play no sound.")},
            {.value = static_cast<int>(ConversionPreset::Custom),
             .title = tr("Custom"),
             .help = tr("You decide for each kind of audio; AAC is always copied.")}});
    style.setChanged([this] { selectConversionStyle(); });

    customContainer_ = new QWidget(&column());
    customContainer_->setObjectName("customContainer");
    auto* const inner = new QVBoxLayout(customContainer_);
    inner->setContentsMargins({});
    column().addWidget(customContainer_);
    containers_ = {{ConversionPreset::Compatible, makeCompatible()},
                   {ConversionPreset::Fast, makeFast()},
                   {ConversionPreset::Custom, makeCustom()}};
    for (const auto& [preset, container] : containers_) container->hide();
    selectConversionStyle();
}

PreferenceColumn* AudioPage::makeCompatible() {
    auto* const view = new PreferenceColumn(context_.vantor.preferences(), this);
    view->setObjectName("containerCompatible");
    view->addHeading(tr("The Compatible Style"));
    auto& second = view->add<PreferenceCheckBox>(
        {.key = kIncludeSurroundTrack.key,
         .label = tr("Keep surround sound as a second track"),
         .help =
             tr("Devices that can play it have the choice; all others play the stereo track.")});
    auto& transcoded = view->add<PreferenceCheckBox>(
        {.key = kIncludeSurroundTrackTranscoded.key,
         .label = tr("Convert a second track in DTS to AC-3"),
         .help = tr("Otherwise it is copied, and Apple devices cannot play it.")});
    second.enable(transcoded);
    return view;
}

PreferenceColumn* AudioPage::makeFast() {
    auto* const view = new PreferenceColumn(context_.vantor.preferences(), this);
    view->setObjectName("containerFast");
    view->addHeading(tr("The High Speed & Quality Style"));
    view->add<PreferenceCheckBox>({.key = kAC3Downmix.key,
                                   .label = tr("Mix AC-3 surround sound down to stereo"),
                                   .help = tr("Otherwise it is copied as it is.")});
    view->add<PreferenceCheckBox>({.key = kDTSDownmix.key,
                                   .label = tr("Mix DTS surround sound down to stereo"),
                                   .help = tr("Otherwise it becomes AC-3 surround sound.")});
    return view;
}

PreferenceColumn* AudioPage::makeCustom() {
    auto* const view = new PreferenceColumn(context_.vantor.preferences(), this);
    view->setObjectName("containerCustom");
    view->addHeading(tr("The Custom Style"));
    const PreferenceChoices few{{.value = AudioMethodAAC, .title = tr("AAC stereo")},
                                {.value = AudioMethodAC3Stereo, .title = tr("AC-3 stereo")}};
    auto all = few;
    all.push_back({.value = AudioMethodAC3Surround, .title = tr("AC-3 surround (5.1)")});
    all.push_back({.value = AudioMethodCopy, .title = tr("Copy as it is")});
    view->add<PreferenceMenu>({.key = kCustomAC3Handling.key,
                               .label = tr("AC-3, stereo"),
                               .help = tr("Dolby Digital with two channels, as on many DVDs.")},
                              all);
    view->add<PreferenceMenu>({.key = kCustomAC351Handling.key,
                               .label = tr("AC-3, surround"),
                               .help = tr("Dolby Digital 5.1, the usual sound of DVDs.")},
                              all);
    view->add<PreferenceMenu>({.key = kCustomDTSHandling.key,
                               .label = tr("DTS, stereo"),
                               .help = tr("No Apple device plays a copy of it.")},
                              all);
    view->add<PreferenceMenu>({.key = kCustomDTS51Handling.key,
                               .label = tr("DTS, surround"),
                               .help = tr("The usual sound of Blu-ray discs; no Apple device plays "
                                          "a copy of it.")},
                              all);
    view->add<PreferenceMenu>({.key = kCustomMP3Handling.key,
                               .label = tr("MP3"),
                               .help = tr("Stereo only; surround counts as other audio.")},
                              all);
    view->add<PreferenceMenu>({.key = kCustomVorbisHandling.key,
                               .label = tr("Vorbis"),
                               .help = tr("Stereo only; surround counts as other audio.")},
                              all);
    view->add<PreferenceMenu>({.key = kCustomUnknownHandling.key,
                               .label = tr("Other audio"),
                               .help = tr("Everything else, such as FLAC, TrueHD and Opus.")},
                              few);
    return view;
}

void AudioPage::selectConversionStyle() {
    const auto style = conversionPresetOf(get(context_.vantor.preferences(), kConversionPreset));
    auto* const shown = containers_.at(style);
    for (const auto& [preset, container] : containers_) {
        if (container == shown || container->parentWidget() != customContainer_) continue;
        customContainer_->layout()->removeWidget(container);
        container->setParent(this);  // it is hidden by that
    }
    customContainer_->layout()->addWidget(shown);
    shown->show();
}

void AudioPage::addTracks() {
    column().addHeading(tr("Tracks"));
    column().add<PreferenceMenu>(
        {.key = kDefaultAudio.key,
         .label = tr("Preferred language"),
         .help = tr("A track in this language is chosen first when a movie has several.")},
        PreferenceChoices{{.value = 0, .title = tr("Your own languages")},
                          {},
                          {.value = 2, .title = tr("English")},
                          {.value = 3, .title = tr("German")},
                          {.value = 4, .title = tr("French")},
                          {.value = 5, .title = tr("Spanish")},
                          {.value = 6, .title = tr("Chinese")},
                          {.value = 7, .title = tr("Japanese")},
                          {.value = 8, .title = tr("Russian")}});
    column().add<PreferenceCheckBox>(
        {.key = kHEAACConvert.key,
         .label = tr("Convert HE-AAC"),
         .help = tr("Otherwise it is copied like any AAC, and some older players have trouble "
                    "with it.")});
}

void AudioPage::addQuality() {
    column().addHeading(tr("Quality of Converted Sound"));
    column().add<PreferenceMenu>(
        {.key = kAACBitrate.key,
         .label = tr("AAC stereo"),
         .help = tr("More sounds better and makes larger files; 128 kbit/s suits most movies.")},
        bitrateChoices(kAACBitrates));
    column().add<PreferenceMenu>({.key = kAC3StereoBitrate.key,
                                  .label = tr("AC-3 stereo"),
                                  .help = tr("AC-3 needs more than AAC for the same quality.")},
                                 bitrateChoices(kAC3StereoBitrates));
    column().add<PreferenceMenu>({.key = kAC3SurroundBitrate.key,
                                  .label = tr("AC-3 surround (5.1)"),
                                  .help = tr("DVDs mostly use 448 kbit/s.")},
                                 bitrateChoices(kAC3SurroundBitrates));
    column().add<PreferenceSlider>(
        {.key = kAudioVolume.key,
         .label = tr("Volume"),
         .help = tr("Only sound that is converted changes; what is copied keeps its volume.")},
        volumeMeaning);
}

std::vector<std::string_view> AudioPage::keys() const {
    auto keys = PreferencePage::keys();
    for (const auto& [preset, container] : containers_) {
        const auto more = container->keys();
        keys.insert(keys.end(), more.begin(), more.end());
    }
    return keys;
}

void AudioPage::showStored() {
    PreferencePage::showStored();
    for (const auto& [preset, container] : containers_) container->showStored();
    selectConversionStyle();
}

}  // namespace reelvane
