#pragma once

#include <functional>
#include <optional>
#include <string_view>
#include <vector>

#include <QString>
#include <QTimer>
#include <QWidget>

class QBoxLayout;
class QButtonGroup;
class QCheckBox;
class QComboBox;
class QLabel;
class QLayout;
class QSlider;
class QSpinBox;
class QStandardItem;

namespace reelvane {

class Preferences;

/// What a control is made from. The label is its accessible name, the help its description.
struct PreferenceText {
    std::string_view key{};
    QString label{};
    QString help{};  ///< one sentence
};

/// A control for one preference with its help below. It stores a change at once, in the background,
/// because every write waits for the disk; until then it is the control that knows the value. What
/// is stored and does not fit shows as what the program makes of it, and stays stored.
class PreferenceControl : public QWidget {
public:
    [[nodiscard]] std::string_view key() const { return text_.key; }
    /// Shows what is stored now; nobody is told.
    virtual void showStored() = 0;
    /// Told after the user has changed the value.
    void setChanged(std::function<void()> changed) { changed_ = std::move(changed); }

protected:
    PreferenceControl(Preferences& preferences, PreferenceText text, QWidget* parent);

    [[nodiscard]] const PreferenceText& text() const { return text_; }
    [[nodiscard]] Preferences& preferences() const { return preferences_; }
    [[nodiscard]] QBoxLayout& column() const { return *column_; }
    [[nodiscard]] int storedInteger() const;
    void store(int value);
    /// Names the widget that the user works with, and keeps passing wheels from changing it.
    void adopt(QWidget& widget);
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    Preferences& preferences_;
    PreferenceText text_;
    QBoxLayout* column_;
    std::function<void()> changed_;
};

/// Yes or no.
class PreferenceCheckBox final : public PreferenceControl {
public:
    /// Inverted: the label says the opposite of what the preference is named.
    enum class Sense { Straight, Inverted };

    PreferenceCheckBox(Preferences& preferences, const PreferenceText& text, Sense sense,
                       QWidget* parent);
    PreferenceCheckBox(Preferences& preferences, const PreferenceText& text, QWidget* parent)
        : PreferenceCheckBox(preferences, text, Sense::Straight, parent) {}

    void showStored() override;
    /// The other control can be used only while this box is ticked.
    void enable(PreferenceControl& dependent);

private:
    QCheckBox* box_;
    Sense sense_;
};

/// One value that the user can choose.
struct PreferenceChoice {
    std::optional<int> value{};  ///< absent: a heading, or a separator when there is no title
    QString title{};
    QString help{};  ///< one sentence; only radio buttons show it
};
using PreferenceChoices = std::vector<PreferenceChoice>;

/// One of several values in a menu.
class PreferenceMenu final : public PreferenceControl {
public:
    PreferenceMenu(Preferences& preferences, const PreferenceText& text,
                   const PreferenceChoices& choices, QWidget* parent);

    void showStored() override;

protected:
    void changeEvent(QEvent* event) override;

private:
    void addChoice(const PreferenceChoice& choice);
    void colourHeadings();

    QComboBox* box_;
    std::vector<QStandardItem*> headings_;  ///< rows that cannot be chosen
};

/// One of a few values, each with its own help. The control's own label and help are for those who
/// hear the window.
class PreferenceRadioButtons final : public PreferenceControl {
public:
    PreferenceRadioButtons(Preferences& preferences, const PreferenceText& text,
                           const PreferenceChoices& choices, QWidget* parent);

    void showStored() override;

private:
    QButtonGroup* buttons_;
};

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

/// Puts a field into the column, with its label before it and a sentence of help below. Label and
/// help are also the field's accessible name and description.
void addLabelledRow(QBoxLayout& column, QWidget& field, const QString& label, const QString& help);

/// A sentence of help, this far from the leading edge.
void addHelp(QBoxLayout& column, const QString& help, int indent = 0);

/// For those who hear the window.
void describe(QWidget& widget, const QString& name, const QString& description);

}  // namespace reelvane
