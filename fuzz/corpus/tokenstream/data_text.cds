"Data Sheet file v. 1"
cat Skills sort 0
  item "Swim" cost 1 prereq "level >= 2"
  item Run cost 1¼ \
  continued
end
"unterminated
