' Text that is too long to be a script.
Execute String(3000000, ":") ' error 1001
x = Eval(String(3000000, " ")) ' error 1002
