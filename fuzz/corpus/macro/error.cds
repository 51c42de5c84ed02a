$$macro Chk(v) {{$$ifnull(v)$$error(value missing)$$endif[$(v)]}}
$$Chk(1)
$$Chk()
