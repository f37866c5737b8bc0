// SPDX-License-Identifier: MIT
#pragma once

#include <QLabel>

namespace corvanta {

enum class TextStyle { title, heading, body, label, secondary };

/// A plain-text label that wraps and never cuts its text: where a word is too long for any line, such as an address or
/// a path, it breaks inside the word.
class TextLabel final : public QLabel {
    Q_OBJECT

public:
    explicit TextLabel(TextStyle style, const QString& text = {}, QWidget* parent = nullptr);

    /// Sets the text letter by letter; nothing in it is mark-up.
    void showText(const QString& text);

    /// The text as it was given, without the places where it may break.
    [[nodiscard]] const QString& shownText() const { return m_text; }

    /// Lets the text be selected and copied with mouse and keyboard.
    void setSelectable();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

private:
    [[nodiscard]] QString selection() const;

    QString m_text;
};

/// A label that takes as much width as its text needs and stays on one line.
[[nodiscard]] TextLabel* makeLineLabel(TextStyle style, const QString& text = {});

} // namespace corvanta
