#pragma once

#include "context/DocumentKinds.h"

#include <QString>
#include <functional>
#include <optional>

class ClientTreeNode;
class ClientTreeView;
class FieldTable;
class clsPopulateClientTree;
class clsSearchAppointments;
class clsSearchTasks;
struct MergeRequest;

// The rules of the recipient dialog: which client tree it shows for a
// merge, which nodes can carry a tick, how ticks spread to children, and how
// the ticks are read from and written to a template's IDList (rows of
// company ID and contact ID, "-1" or empty for none).
class RecipientSelection {
public:
    enum Mode : int {
        Companies = 1,             // company merge with the default contact
        Contacts = 2,              // contact merge: people anywhere in the ledger
        CompaniesWithContacts = 3, // company merge with specified contacts
    };

    explicit RecipientSelection(int mode) : m_mode(mode) {}
    int mode() const { return m_mode; }

    // The dialog's mode for a template kind; nothing for kinds that are not
    // merged to clients.
    static std::optional<int> modeForInformationType(InformationKind kind);
    // What the merge says when the dialog (or a search dialog) was left
    // without a recipient.
    static QString nothingChosenMessage(InformationKind kind);
    // A task or appointment template that has its recipients already: IDList
    // rows, or the filter of an accepted search. Client kinds always ask.
    static bool hasChosenRecipients(InformationKind kind, const FieldTable& ids,
                                    const QString& SQLFilter);
    // The recipients of a merge request from a template's choice, as the
    // merge command takes them: the IDList rows; for tasks and appointments
    // without rows but with a search filter, the search's criteria, so that
    // the merge runs the very search the user accepted.
    static void requestRecipients(InformationKind kind, const FieldTable& ids,
                                  const QString& SQLFilter, const clsSearchTasks& tasks,
                                  const clsSearchAppointments& appointments, MergeRequest& request);
    // Whether a client database is connected; without one the dialog shows
    // unavailableMessage() instead of opening.
    static bool available();
    static QString unavailableMessage();

    QString caption() const;
    QString label() const;

    // Sets the tree's mode for the dialog's mode: the practice's clients
    // for a company merge, with their contacts when contacts are specified,
    // and the whole ledger for a contact merge.
    void configureTree(clsPopulateClientTree& tree) const;

    // Ticks the nodes that the list names: company nodes by column 1 in
    // modes 1 and 3; contact nodes in modes 2 and 3 where a row holds the
    // node's host company (-1 for none) and its contact, so that a person
    // shown under several clients keeps the tick of the one that was
    // chosen. `yield` runs now and then, for a window to stay responsive.
    void populateCheckedItems(ClientTreeView& tree, const FieldTable& ids,
                              const std::function<void()>& yield = {}) const;

    // Empties the list and writes a row per ticked node of the mode, each
    // (company, contact) pair once. Returns hasSelection: true when at least
    // one row was written.
    bool saveInfo(const ClientTreeView& tree, FieldTable& ids) const;

    // Carries the user's tick (or untick) of a node to its children by the
    // tree's rules: companies in mode 1, contacts in modes 2 and 3.
    void nodeCheck(clsPopulateClientTree& rules, ClientTreeNode* node) const;

private:
    int m_mode;
};
