-- Tasks and appointments for the search filters, stored as the host stores
-- them: Yes/No as 0/1 (one true as -1, as the old engine wrote), ISO dates,
-- times of day on 1899-12-30.
INSERT INTO Companies (CompanyID, CompanyName) VALUES (10, 'Acme Widgets');
INSERT INTO Companies (CompanyID, CompanyName) VALUES (11, 'Bakery on Main');
INSERT INTO Companies (CompanyID, CompanyName) VALUES (12, 'O''Brien & Sons');
INSERT INTO Companies (CompanyID, CompanyName) VALUES (13, 'Hidden Holdings');
INSERT INTO Companies (CompanyID, CompanyName) VALUES (14, 'No Client Row');
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (100, 10, 1, 1);
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (101, 11, 1, -1);
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (102, 12, 1, 1);
INSERT INTO ClientData (ClientDataID, CompanyIDNum, ActiveStatus, ShowThisClient) VALUES (103, 13, 1, 0);
INSERT INTO Contacts (ContactID, DisplayName, FirstName, LastName) VALUES (200, 'Ann Lee', 'Ann', 'Lee');
INSERT INTO AccountantEmployeeInfo (ContactID, DisplayName, UserName, UserLevel) VALUES (50, 'Dana Fox', 'dfox', 1);
INSERT INTO AccountantEmployeeInfo (ContactID, DisplayName, UserName, UserLevel) VALUES (51, 'Eli Moss', 'emoss', 2);
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, NotifiedDate, inHouseDueDate, EmployeeAssigned, InPossession, Closed) VALUES (300, 100, 'GST Return Q1', 101, 1, '2024-01-31', '2024-01-10', '2024-01-25', 'Dana Fox', 1, 0);
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, NotifiedDate, inHouseDueDate, EmployeeAssigned, Notified, Closed) VALUES (301, 100, 'Payroll Remittance Jan', 103, 10, '2024-02-15', '2024-02-01', '2024-02-10', 'Eli Moss', 1, 1);
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, NotifiedDate, EmployeeAssigned, Prepared, Recieved) VALUES (302, 101, 'gst return q2', 101, 2, '2024-04-30', '2024-04-01', 'Dana Fox', 1, -1);
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, Delivered, Signature, Cheque) VALUES (303, 101, 'Custom Review', 111, 5, '2024-03-31', 1, 1, 1);
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, hideInTasks) VALUES (304, 100, 'GST Return Q3', 101, 3, '2024-07-31', 1);
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate) VALUES (305, 103, 'GST Return Hidden Client', 101, 1, '2024-01-31');
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, EmployeeAssigned) VALUES (306, 102, 'RL-1 Slips', 10340, 0, '2024-02-28', 'O''Neil');
INSERT INTO Schedule (ScheduleID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate) VALUES (307, 102, 'Payroll Remittance Feb', 103, 20, NULL);
INSERT INTO archiveSchedule (archiveScheduleID, ScheduleID, ClientDataID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, hideInTasks) VALUES (1, 250, 100, 100, 'GST Return 2022', 101, 4, '2022-12-31', 0);
INSERT INTO archiveSchedule (archiveScheduleID, ScheduleID, ClientDataID, ClientNum, scheduleName, totalNum, scheduleNum, DueDate, hideInTasks) VALUES (2, 251, 101, 101, 'Payroll 2022', 103, 10, '2022-11-15', 0);
INSERT INTO Appointments (AppointmentID, CompanyIDNum, ContactIDNum, UserIDNum, Subject, DateFrom, TimeFrom, TimeTo, BackColour) VALUES (400, 10, NULL, 50, 'Year end review', '2024-03-04', '1899-12-30 09:30:00', '1899-12-30 10:30:00', 0);
INSERT INTO Appointments (AppointmentID, CompanyIDNum, ContactIDNum, UserIDNum, Subject, DateFrom, TimeFrom, TimeTo, BackColour) VALUES (401, 11, NULL, 51, 'O''Brien''s budget', '2024-03-04', '1899-12-30 08:00:00', '1899-12-30 09:00:00', 255);
INSERT INTO Appointments (AppointmentID, CompanyIDNum, ContactIDNum, UserIDNum, Subject, DateFrom, TimeFrom, TimeTo, BackColour) VALUES (402, 12, 200, 50, 'GST planning', '2024-03-15', '1899-12-30 14:00:00', '1899-12-30 15:15:00', 255);
INSERT INTO Appointments (AppointmentID, CompanyIDNum, ContactIDNum, UserIDNum, Subject, DateFrom, TimeFrom, TimeTo, BackColour) VALUES (403, 10, NULL, 51, 'Review, 50% done', '2024-04-02', '1899-12-30 16:00:00', '1899-12-30 17:00:00', 65280);
INSERT INTO Appointments (AppointmentID, CompanyIDNum, ContactIDNum, UserIDNum, Subject, DateFrom, TimeFrom, TimeTo, BackColour) VALUES (404, 0, NULL, NULL, 'Walk-in', '2024-02-20', '1899-12-30 11:00:00', '1899-12-30 11:30:00', NULL);
