$$macro Dice(d) {{$$scan(d, "([0-9]+)d([0-9]+)", num, sides)[$(num)|$(sides)] $$exp("num*sides")}}
$$Dice(3d6)
$$define L a,b,c
$$repeat($(L), x, ",", ";") $(x) $$endrepeat
$$repeat("1 2", i, " ")$$repeat("a;b", j, ";")$(i)$(j)$$endrepeat$$endrepeat
cost $5 and $x
