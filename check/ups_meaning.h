#pragma once

/// What the files say about the UPSs, and who refers to them. Each function adds findings of one
/// or two classes.

void check_type_codes();   // type_code
void check_connections();  // connection, no_address
void check_leads();        // short_lead

// free_slot
void check_members();
void check_schedule_slots();
void check_sensors();

void check_doubled_members();  // member_twice
void check_redundancy();       // redundancy
