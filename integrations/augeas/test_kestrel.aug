(*
Module: Test_Kestrel
  Provides unit tests and examples for the <Kestrel> lens.
*)

module Test_Kestrel =

(* A file as Harrier writes it *)
let saved = "; This is file with configuration parameters for KESTREL 
; Do not change any line !

[System]
Name=\"Plant room\"
Location=\"\"
Language=1

[UPS_00]
Name=\"42\"

"

test Kestrel.lns get saved =
  { "#comment" = "This is file with configuration parameters for KESTREL" }
  { "#comment" = "Do not change any line !" }
  { "System"
    { "Name" = "Plant room" }
    { "Location" = "" }
    { "Language" = "1" } }
  { "UPS_00"
    { "Name" = "42" } }

(* Changed, new, inserted and removed *)
test Kestrel.lns put saved after
    set "/System/Name" "Server room";
    set "/System/Location" "A=b;c";
    set "/System/Language" "12";
    set "/System/DataLogRate" "5";
    insb "Contact" "/System/Location";
    set "/System/Contact" "";
    insa "#comment" "/System/Language";
    set "/System/#comment" "German";
    rm "/UPS_00";
    set "/UPS_01/Port" "/dev/ttyS1"
  = "; This is file with configuration parameters for KESTREL 
; Do not change any line !

[System]
Name=\"Server room\"
Contact=\"\"
Location=\"A=b;c\"
Language=12
; German
DataLogRate=5

[UPS_01]
Port=\"/dev/ttyS1\"

"

(* A value alone decides between quotes and none, where a line does not have its form yet *)
test Kestrel.lns put saved after
    set "/System/Name" "7";
    set "/System/Location" "x";
    set "/System/Language" "-1";
    set "/UPS_00/Name" "43"
  = "; This is file with configuration parameters for KESTREL 
; Do not change any line !

[System]
Name=7
Location=\"x\"
Language=\"-1\"

[UPS_00]
Name=\"43\"

"

(* What no line can hold, or what would be another line when read again *)
test Kestrel.lns put saved after set "/System/Name" "a \"b\"" = *
test Kestrel.lns put saved after set "/System/Name" "a\nb" = *
test Kestrel.lns put saved after set "/System/My key" "x" = *
test Kestrel.lns put saved after set "/My section/Name" "x" = *
test Kestrel.lns put saved after set "/System/#line" "Name=x" = *
test Kestrel.lns put saved after set "/System/#comment" "" = *
test Kestrel.lns put saved after set "/System" "x" = *

(* Lines that a person wrote *)
let typed = "Name=nobody
# Our plant
;

[System] ; the first one
Name=Plant room 
Location=\"Cellar\" ; below
Contact=\"Sam
Language = 3
DataLog=\"1\" ; yes
DataLogRate=5 ; seconds
Serial number=4
 ; indented
 EventLog=5
Name
=4
\tname=x
]
[Sistem?]
[]
[System
[System]x
Name=\"Again\"\"\"
Contact=\"
Location=
"

test Kestrel.lns get typed =
  { "#line" = "Name=nobody" }
  { "#comment" = "Our plant" }
  { "System"
    { "Name" = "Plant room " }
    { "Location" = "Cellar" }
    { "Contact" = "Sam" }
    { "#line" = "Language = 3" }
    { "DataLog" = "1" }
    { "DataLogRate" = "5 ; seconds" }
    { "#line" = "Serial number=4" }
    { "#comment" = "indented" }
    { "#line" = " EventLog=5" }
    { "#line" = "Name" }
    { "#line" = "=4" }
    { "#line" = "\tname=x" }
    { "#line" = "]" }
    { "#line" = "[Sistem?]" }
    { "#line" = "[]" }
    { "#line" = "[System" } }
  { "System"
    { "Name" = "Again" }
    { "Contact" = "" }
    { "Location" = "" } }

(* Each value changes in its place, and what it had around it stays *)
test Kestrel.lns put typed after
    set "/System[1]/Name" "Attic";
    set "/System[1]/Location" "Roof";
    set "/System[1]/Contact" "Kim";
    set "/System[1]/DataLog" "0";
    set "/System[1]/DataLogRate" "6";
    rm "/System[1]/#line";
    set "/System[2]/Name" "";
    set "/System[2]/Contact" "Lee";
    set "/System[2]/Location" "West"
  = "Name=nobody
# Our plant
;

[System] ; the first one
Name=Attic
Location=\"Roof\" ; below
Contact=\"Kim
DataLog=\"0\" ; yes
DataLogRate=6
 ; indented
[System]x
Name=\"\"
Contact=\"Lee\"
Location=\"West\"
"

(* Windows line ends: one after a value without quotes belongs to it *)
let windows = "; a\r\n\r\n[System]\r\nName=\"a\"\r\nLocation=\"1\r\"\r\nLanguage=1\r\n\r\n"
test Kestrel.lns get windows =
  { "#comment" = "a" }
  { "System" { "Name" = "a" } { "Location" = "1\r" } { "Language" = "1\r" } }
test Kestrel.lns put windows after set "/System/Name" "b"; set "/System/Language" "2" =
  "; a\r\n\r\n[System]\r\nName=\"b\"\r\nLocation=\"1\r\"\r\nLanguage=2\n\r\n"

(* The reserved bytes, which stand before the letters here *)
test Kestrel.lns get "[System]\nName=\"a\"\n" = *
test Kestrel.lns get "[System]\nName=a\n" = *
test Kestrel.lns get ";a\n" = *
test Kestrel.lns get "Name=a\n" = *
