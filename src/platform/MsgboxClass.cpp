#include "platform/MsgboxClass.h"

void ScriptedMsgbox::showMessage(const QString& text, int kind) {
    record(Shown::Type::Message, text, kind, Yes);
}

int ScriptedMsgbox::askQuestion(const QString& text, int kind) {
    int answer = nextAnswer();
    if (answer == Cancel) {
        answer = No;
    }
    record(Shown::Type::Question, text, kind, answer);
    return answer;
}

int ScriptedMsgbox::askQuestionWithCancel(const QString& text, int kind) {
    const int answer = nextAnswer();
    record(Shown::Type::QuestionWithCancel, text, kind, answer);
    return answer;
}

QStringList ScriptedMsgbox::texts() const {
    QStringList result;
    for (const auto& s : m_shown) {
        result << s.text;
    }
    return result;
}

int ScriptedMsgbox::nextAnswer() {
    if (m_answers.empty()) {
        return m_fallback;
    }
    const int answer = m_answers.front();
    m_answers.pop_front();
    return answer;
}

void ScriptedMsgbox::record(Shown::Type type, const QString& text, int kind, int answer) {
    m_shown.push_back({type, text, kind, answer});
    if (m_sink) {
        m_sink(text);
    }
}
