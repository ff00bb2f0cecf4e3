#pragma once

#include <filesystem>
#include <string_view>

#include <QIcon>
#include <QPainter>
#include <QPixmap>
#include <QWidget>

namespace reelvane {

/// The program's pictures, from its resources. Main thread only.
class Icons {
public:
    /// `folder` holds NAME.svg for drawings in one colour and for coloured pictures alike.
    explicit Icons(std::filesystem::path folder) : folder_(std::move(folder)) {}

    /// A drawing in one colour, which takes the colour of the text around it, in every theme, state
    /// and resolution. Empty when there is no such picture.
    [[nodiscard]] QIcon symbolic(std::string_view name) const;
    /// A picture with colours of its own.
    [[nodiscard]] QIcon coloured(std::string_view name) const;

private:
    [[nodiscard]] QString file(std::string_view name) const;

    std::filesystem::path folder_;
};

/// A small picture beside a text, drawn for the resolution and the theme of the moment.
class IconView final : public QWidget {
public:
    using QWidget::QWidget;

    void setIcon(const QIcon& icon) {
        icon_ = icon;
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        icon_.paint(&painter, rect());
    }

private:
    QIcon icon_;
};

}  // namespace reelvane
