#pragma once

class frmDocument;
class frmMain;

// The recipients of a merge template, chosen in the windows: the client
// tree for company and contact merges, the search dialogs for task and
// appointment merges. The choice lands in the template's IDList, or in its
// SQLFilter and search criteria.

// Registers the File New merge commands: the new template (the routine
// registered before this one, when there is one), then its recipients.
void installRecipientCommands(frmMain& main);

// Opens the dialog of the document's kind (the recipient button of the
// merge panel). True when the user chose recipients.
bool selectRecipients(frmDocument& document);

// The search dialogs over the document's own search objects: an accepted
// search sets its SQLFilter and empties its IDList, so that the merge runs
// the search. True when the search was accepted.
bool openTaskSearchForm(frmDocument& document);
bool openAppointmentSearchForm(frmDocument& document);

// The choice of recipients at the start of a merge: a task or appointment
// template that has them goes on; otherwise the dialog of its kind opens,
// and when it is left without recipients the user is told and the answer
// is false.
bool chooseRecipientsForMerge(frmDocument& document);
