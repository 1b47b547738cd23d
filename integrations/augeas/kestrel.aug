(*
Module: Kestrel
  Parses the INI files of the Kestrel UPS monitoring service

About: The tree
  A section is a node, and its keys are below it. Values have no quotes: the service drops a quote at
  the beginning of a value, and ends the value before the next quote. Remarks are nodes "#comment",
  and all other lines are nodes "#line". Blank lines have no nodes.

About: What a change writes
  A line keeps its form, and all other lines keep their bytes. A line has another form when it is new,
  or when a number becomes a text or a text a number: digits only are written without quotes, all else
  in double quotes. The lens takes any sections, keys and values. harrier-check knows which are right.
*)

module Kestrel =

autoload xfm

let name = /[A-Za-z0-9_]+/
let rest = /[^\n]*/

(* Variable: reserved
     Lines with the bytes 1 to 4, which stand between the brackets here. Augeas needs them itself and
     ends in the middle of a save if they are in a tree. So they are a parse error. *)
let reserved = rest . /[-]/ . rest

(* Variable: blank_lines
     Lines and remarks without a text. They belong to the line after them, or to the end of the
     section. So a new key comes before the blank line that ends its section. *)
let blank_lines = /([ \t\r]*[;#]?[ \t\r]*\n)*/
let before = del blank_lines ""
let line_feed = del "\n" "\n"

(* View: comment *)
let comment = [ label "#comment" . before . del /[ \t\r]*[;#][ \t\r]*/ "; "
              . store (/[^ \t\r\n]([^\n]*[^ \t\r\n])?/ - reserved) . del /[ \t\r]*\n/ "\n" ]

(* View: other
     A line that is no remark, no header and has no value. *)
let other = /[ \t\r]+[^ \t\r\n;#][^\n]*/
          | /[^][A-Za-z0-9_ \t\r\n;#][^\n]*/
          | /\][^\n]*/
          | /[A-Za-z0-9_]+([^A-Za-z0-9_=\n][^\n]*)?/
          | /\[([^A-Za-z0-9_\n][^\n]*)?/
          | /\[[A-Za-z0-9_]+([^]A-Za-z0-9_\n][^\n]*)?/
let line (lines:regexp) = [ label "#line" . before . store (lines - reserved) . line_feed ]

(* View: setting
     Texts and numbers exclude each other, so the value alone decides on the form of a new line. The
     first quote is a part of its own before a number, but not before a text. Lines of different parts
     do not pass on their form to each other, so a number that becomes a text gets quotes. *)
let digits = /[0-9]+/
let text = /[^"\n]+/ - digits - reserved
let setting (value:lens) = [ before . key name . value . line_feed ]
let number_setting = setting (del "=" "=" . del /"?/ "" . store digits . del /("[^\n]*)?/ "")
let text_setting = setting (del /="?/ "=\"" . store text . del /("[^\n]*)?/ "\"")
let empty_setting = setting (del /=("("[^\n]*)?)?/ "=\"\"" . value "")

(* View: section *)
let section = [ del "[" "[" . key name . del /\][^\n]*\n/ "]\n"
              . (number_setting | text_setting | empty_setting | comment | line other)*
              . del blank_lines "\n" ]

(* View: lns
     No value counts before the first header. *)
let lns = (comment | line (other | name . "=" . rest))* . before . section*

let filter = incl "/opt/kestrel/kestrel.ini"
           . incl "/opt/kestrel/jobs.ini"
           . incl "/opt/kestrel/jobsSTS.ini"
           . incl "/opt/kestrel/sensor.ini"
           . incl "/opt/kestrel/group_0[0-9].ini"

let xfm = transform lns filter
