#pragma once

#include <QTimer>

#include "ui/preference_controls.h"

class QLabel;
class QLayout;
class QSlider;
class QSpinBox;

namespace reelvane {

/// A number in per cent on a slider and in a field beside it. The slider covers the useful part of
/// the range and marks 100; the field takes all of it. Written when the user lets go, or comes to
/// rest.
class PreferenceSlider final : public PreferenceControl {
public:
    /// What a value means, in a sentence that follows the slider.
    using Explain = std::function<QString(int)>;

    PreferenceSlider(Preferences& preferences, const PreferenceText& text, Explain explain,
                     QWidget* parent);

    ~PreferenceSlider() override;
    PreferenceSlider(const PreferenceSlider&) = delete;
    PreferenceSlider& operator=(const PreferenceSlider&) = delete;
    PreferenceSlider(PreferenceSlider&&) = delete;
    PreferenceSlider& operator=(PreferenceSlider&&) = delete;

    void showStored() override;

protected:
    void hideEvent(QHideEvent* event) override;

private:
    void makeField();
    void makeSlider();
    void layOut();
    [[nodiscard]] QLayout* makeScale();
    void slide(int value);
    void show(int value);
    /// Writes a change that still waits for the user to come to rest.
    void finish();

    QSpinBox* field_;
    QSlider* slider_;
    QLabel* meaning_;
    Explain explain_;
    QTimer rest_;
};

}  // namespace reelvane
