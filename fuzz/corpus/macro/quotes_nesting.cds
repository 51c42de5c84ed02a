$$macro Q(a) {{x$(a)x "x$(a)x" $$if(0)$$if(1 +* 2)$$endif$$else ok$$endif}}
$$Q("p, q")
$$macro B() {{a}b}}
$$B()
$$define A x$(A)
$(A)
