#pragma once

#include "platform/MsgboxClass.h"

class QWidget;

// Message boxes over the main window, titled with the program's name.
class QtMsgbox : public MsgboxClass {
public:
    explicit QtMsgbox(QWidget* owner = nullptr) : m_owner(owner) {}
    void setOwner(QWidget* owner) { m_owner = owner; }

    void showMessage(const QString& text, int kind = KindNormal) override;
    int askQuestion(const QString& text, int kind = KindNormal) override;
    int askQuestionWithCancel(const QString& text, int kind = KindNormal) override;

private:
    QWidget* m_owner;
};
