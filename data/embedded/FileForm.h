// The form that a file's values, texts and indexes are in, counted in the file itself.
//
// 2: yes is -1 and never null, whole numbers have no fraction, dates are in one form, letters with
// a mark order beside the plain ones, and every look-up has its index. 0 and 1: as earlier programs
// left it.
#pragma once

#include <string_view>

namespace kavidex::data::embedded {

class Session;

inline constexpr int currentForm = 2;

int FormOf(Session& session);
void WriteForm(Session& session);

// Brings a file of an earlier form into this one, as one transaction. One that can only be read
// stays as it is, and is read in its own order.
void BringIntoForm(Session& session);

// Lets a file of an earlier form be read in the order that its indexes have.
void ReadInOwnOrder(Session& session);

// Makes the indexes of the system's look-ups that are missing where their column is there; after a
// definition, those of the table that it names.
void MakeLookupIndexes(Session& session);
void MakeLookupIndexes(Session& session, std::string_view definition);

} // namespace kavidex::data::embedded
