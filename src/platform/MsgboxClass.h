#pragma once

#include <QString>
#include <QStringList>

#include <deque>
#include <functional>

// Every message the program shows goes through this interface, with the
// exact text of the caller. The windowed program plugs in message boxes;
// tests and the headless commands plug in ScriptedMsgbox.
class MsgboxClass {
public:
    // Dialog kinds as the callers pass them.
    static constexpr int KindNormal = 10;
    static constexpr int KindFatal = 3;

    // Answers of askQuestion and askQuestionWithCancel.
    static constexpr int Yes = 0;
    static constexpr int No = 1;
    static constexpr int Cancel = 2;

    virtual ~MsgboxClass() = default;

    virtual void showMessage(const QString& text, int kind = KindNormal) = 0;
    // Returns Yes or No.
    virtual int askQuestion(const QString& text, int kind = KindNormal) = 0;
    // Returns Yes, No or Cancel.
    virtual int askQuestionWithCancel(const QString& text, int kind = KindNormal) = 0;
};

// Records what was shown and answers questions from a queue; an empty queue
// answers with the fallback (Yes unless changed). Used by tests and by the
// command-line subcommands, which print what is shown through the sink.
class ScriptedMsgbox : public MsgboxClass {
public:
    struct Shown {
        enum class Type { Message, Question, QuestionWithCancel };
        Type type;
        QString text;
        int kind;
        int answer;
    };

    void showMessage(const QString& text, int kind = KindNormal) override;
    int askQuestion(const QString& text, int kind = KindNormal) override;
    int askQuestionWithCancel(const QString& text, int kind = KindNormal) override;

    void queueAnswer(int answer) { m_answers.push_back(answer); }
    void setFallbackAnswer(int answer) { m_fallback = answer; }
    // Called with each text as it is shown (for example to print it).
    void setSink(std::function<void(const QString&)> sink) { m_sink = std::move(sink); }

    const std::vector<Shown>& shown() const { return m_shown; }
    QStringList texts() const;
    void clear() { m_shown.clear(); }

private:
    int nextAnswer();
    void record(Shown::Type type, const QString& text, int kind, int answer);

    std::deque<int> m_answers;
    int m_fallback = Yes;
    std::vector<Shown> m_shown;
    std::function<void(const QString&)> m_sink;
};
